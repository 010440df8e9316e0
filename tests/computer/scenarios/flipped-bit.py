"""The card forgets a bit between writing and verifying."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-verifying")
    computer.flip_bit(card, at=23 << 20)
    computer.expect_failure(f"Verification failed at byte offset {23 << 20}:")
    computer.expect_released(card)
