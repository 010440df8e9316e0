"""The lock switch of the card is set."""


def play(computer):
    computer.plug_reader(is_locked=True)
    computer.expect_protected("Its write-protection switch is on")
