"""The card stays in its slot, and is written once more after a refresh."""


def play(computer):
    card = computer.insert_card()
    computer.choose_target()
    computer.write()
    computer.expect_success()
    computer.click("push button", "Done")
    computer.spoil(card)
    computer.click("push button", "Clear")
    computer.choose_target()
    computer.confirm_write()
    computer.answer_dialog_if_asked()
    computer.expect_success()
    computer.expect_released(card)
    computer.expect_card_holds(card)
