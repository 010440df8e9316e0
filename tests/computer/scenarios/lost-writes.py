"""The card has worn out: it confirms every write, but stores nothing."""


def play(computer):
    [card] = computer.plug_reader(loses_writes=True)
    computer.choose_target()
    computer.write()
    computer.expect_failure("Verification failed at byte offset")
    computer.expect_released(card)
