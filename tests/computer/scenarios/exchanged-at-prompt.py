"""Another card of the same size is put into the slot while the password is asked for."""
PLACES = ("slot", "reader")


def play(computer, place):
    chosen = computer.insert(computer.blank_card(), place)
    before = computer.content(chosen)
    computer.choose_target()
    computer.confirm_write()
    computer.await_dialog()
    other = computer.exchange_card(chosen)
    computer.rest(5)
    computer.answer_dialog()
    computer.expect_failure("")
    computer.expect_content(chosen, before)
    computer.expect_content(other, before)
    computer.expect_released(other)
