"""The card is pulled out while it is being written."""
PLACES = ("slot", "reader")


def play(computer, place):
    computer.make_large_image()
    card = computer.insert(computer.blank_card(), place)
    computer.write_until("Writing image data.")
    computer.pull_card(card)
    computer.expect_failure("The SD-card write did not complete at byte offset")
    computer.expect_released(card)
