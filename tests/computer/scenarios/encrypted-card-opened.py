"""The card is encrypted and has been unlocked."""


def play(computer):
    card = computer.insert_card(computer.card_with_volume())
    computer.as_administrator(
        f"umount /dev/{card.device}p1; echo -n key > /tmp/key; wipefs -aq /dev/{card.device}p1; "
        f"cryptsetup luksFormat -q --pbkdf pbkdf2 --pbkdf-force-iterations 1000 /dev/{card.device}p1 /tmp/key && "
        f"cryptsetup open --key-file /tmp/key /dev/{card.device}p1 secret")
    computer.expect_protected("It is part of a volume group, a RAID or an encrypted volume that is in use.")
