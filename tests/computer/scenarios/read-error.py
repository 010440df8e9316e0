"""The card has a sector that can be written, but not read back."""


def play(computer):
    [card] = computer.plug_reader(fails=("read", 30_000))
    computer.choose_target()
    computer.write()
    computer.expect_failure("The SD card could not be read for verification at byte offset")
    computer.expect_released(card)
