"""Somebody is in a hurry."""


def play(computer):
    card = computer.insert_card()
    computer.switch_verification_off()
    computer.choose_target()
    computer.write()
    computer.expect_written(card, verified=False)
