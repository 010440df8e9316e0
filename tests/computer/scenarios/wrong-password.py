"""The user mistypes the password, and types it again."""


def play(computer):
    card = computer.insert_card()
    computer.choose_target()
    computer.confirm_write()
    computer.answer_dialog("wrong horse")
    computer.rest(8)
    computer.answer_dialog()
    computer.expect_written(card)
