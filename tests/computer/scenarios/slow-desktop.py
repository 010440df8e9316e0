"""The desktop mounts the written volumes with a delay, because it starts a program for that."""


def play(computer):
    computer.desktop_starts_a_program_for_each_mount()
    card = computer.insert_card()
    computer.choose_target()
    computer.write()
    computer.expect_partitions(card, 2)
    computer.expect_safe_only_when_released(card)
    computer.expect_mount_attempt()
