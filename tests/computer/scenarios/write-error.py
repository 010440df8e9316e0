"""The card has a sector that can't be written."""


def play(computer):
    [card] = computer.plug_reader(fails=("write", 30_000))
    computer.choose_target()
    computer.write()
    computer.expect_failure("The SD-card write did not complete at byte offset")
    computer.expect_released(card)
