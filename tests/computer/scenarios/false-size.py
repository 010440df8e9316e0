"""The card is counterfeit: it claims a larger size than it has."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-verifying")
    computer.forget_beyond(card, 20 << 20)
    computer.expect_failure(f"Verification failed at byte offset {20 << 20}:")
    computer.expect_released(card)
