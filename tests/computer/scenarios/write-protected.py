"""The lock switch of the card is set."""


def play(computer):
    computer.insert_card(write_protected=True)
    computer.expect_protected("Its write-protection switch is on")
