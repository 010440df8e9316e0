"""The card is mounted where the desktop can't see it, as in a container."""


def play(computer):
    computer.desktop_mounts_after(10**6)
    card = computer.insert_card(computer.card_with_volume())
    computer.leave_running(f"exec unshare --mount sh -c \"mount /dev/{card.device}p1 /mnt && exec sleep 1000\"")
    computer.expect_protected("mounted elsewhere, such as in a container.")
