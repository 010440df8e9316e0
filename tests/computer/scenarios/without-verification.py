"""The user is in a hurry, and writes without verification."""


def play(computer):
    card = computer.insert_card()
    computer.switch_verification_off()
    computer.choose_target()
    computer.write()
    computer.expect_written(card, verified=False)
