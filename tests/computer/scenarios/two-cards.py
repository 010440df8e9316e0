"""Two cards are written one after the other in the same place."""
PLACES = ("slot", "reader")


def play(computer, place):
    first = computer.insert(computer.blank_card(), place)
    computer.choose_target()
    computer.write()
    computer.expect_written(first)
    computer.click("push button", "Done")
    computer.click("push button", "Clear")
    second = computer.exchange_card(first)
    computer.rest(5)
    computer.write_again()
    computer.expect_written(second)
    computer.expect_card_holds(first)
