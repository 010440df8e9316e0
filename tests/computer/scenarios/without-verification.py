"""Somebody is in a hurry."""


def play(computer):
    card = computer.insert_card()
    computer.switch_verification_off()
    computer.choose_target()
    computer.write()
    computer.expect_success(verified=False)
    computer.expect_released(card)
    computer.expect_card_holds(card)
