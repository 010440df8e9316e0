"""The card is pulled out while it is being read back."""
PLACES = ("slot", "reader")


def play(computer, place):
    computer.make_large_image("128M")
    card = computer.insert(computer.blank_card(), place)
    computer.write_until("Verifying the image")
    computer.pull_card(card)
    computer.expect_failure("The SD card could not be read for verification at byte offset")
    computer.expect_released(card)
