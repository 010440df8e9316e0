"""A loop device lies over a partition of the card, and is mounted."""


def play(computer):
    computer.desktop_mounts_after(10**6)
    card = computer.insert_card(computer.card_with_volume())
    computer.as_administrator(f"mount $(losetup --find --show /dev/{card.device}p1) /mnt")
    computer.expect_protected("It is used by a loop device, a storage server or the like.")
