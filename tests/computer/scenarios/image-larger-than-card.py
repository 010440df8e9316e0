"""The image does not fit on the card."""


def play(computer):
    computer.make_large_image("600M")
    computer.insert_card()
    computer.choose_target()
    computer.expect_text("The selected image is larger than the selected SD card.")
    computer.expect_disabled("push button", "Write Disk Image")
