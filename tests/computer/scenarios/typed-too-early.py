"""The user types the password before the desktop's dialog is there. What reaches the window stops nothing."""
from image import PASSWORD


def play(computer):
    card = computer.insert_card()
    computer.choose_target()
    computer.confirm_write()
    computer.machine.type(PASSWORD)
    computer.await_dialog()
    computer.machine.press("ctrl", "a")  # the dialog may have taken the last letters
    computer.answer_dialog()
    computer.expect_written(card)
