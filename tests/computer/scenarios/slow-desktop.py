"""The desktop takes its time until it mounts what has been written."""


def play(computer):
    computer.desktop_mounts_after(12)
    card = computer.insert_card()
    computer.choose_target()
    computer.write()
    computer.expect_partitions(card, 2)
    computer.expect_safe_only_when_released(card, "could not be ejected")
