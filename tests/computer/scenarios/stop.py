"""The user presses Stop while the image is being written."""
PLACES = ("slot", "reader")


def play(computer, place):
    computer.make_large_image()
    card = computer.insert(computer.blank_card(), place)
    computer.write_up_to("while-writing")
    computer.stop()
    computer.expect_text("Operation cancelled. Writing was interrupted.", never="SD Card Is Safe to Remove")
    computer.expect_released(card)
