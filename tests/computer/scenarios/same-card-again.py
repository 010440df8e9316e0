"""The card stays in its slot, and is written once more after a refresh."""


def play(computer):
    card = computer.insert_card()
    computer.choose_target()
    computer.write()
    computer.expect_success()
    computer.click("push button", "Done")
    computer.spoil(card)
    computer.click("push button", "Clear")
    computer.write_again()
    computer.expect_written(card)
