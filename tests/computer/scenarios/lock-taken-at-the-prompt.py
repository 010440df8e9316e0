"""While the password is asked for, another program locks the card: a partitioning tool all of it, a virtual machine some
bytes of it."""
from story import LOCKS


def play(computer):
    for kind in LOCKS:
        [card] = computer.plug_reader()
        before = computer.content(card)
        computer.choose_target(f"disk{computer.number_of(card)}\\b")
        computer.confirm_write()
        computer.await_dialog()
        computer.lock(card, kind)
        computer.answer_dialog()
        computer.expect_failure("The SD card is still in use by another process.")
        computer.expect_content(card, before)
        computer.unplug_reader(card)
        computer.click("push button", "Clear")
