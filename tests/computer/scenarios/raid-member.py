"""The card is a member of a RAID that is running."""


def play(computer):
    computer.desktop_mounts_after(10**6)
    card = computer.insert_card(computer.card_with_volume())
    computer.as_administrator(f"mdadm --create /dev/md/cards --run --level=1 --raid-devices=2 "
                              f"/dev/{card.device}p1 missing")
    computer.expect_protected("It is part of a volume group, a RAID or an encrypted volume that is in use.")
