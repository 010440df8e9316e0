"""The computer swaps onto the card."""


def play(computer):
    computer.desktop_mounts_after(10**6)
    card = computer.insert_card(computer.card_with_volume())
    computer.as_administrator(f"mkswap /dev/{card.device}p1 && swapon /dev/{card.device}p1")
    computer.expect_protected("It is used as swap space.")
