"""The disk service is switched off while the image is being verified, and stays off."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-verifying")
    computer.as_administrator("systemctl mask --runtime --now udisks2.service")
    computer.expect_failure("The image was written, but the SD card could not be ejected.")
    computer.expect_text("The disk service UDisks2 is not running.")
    computer.expect_card_holds(card)
    computer.expect_closed(card)
