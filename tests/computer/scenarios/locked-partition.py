"""While the password is asked for, a program begins to work on a partition of the card, and locks it."""


def play(computer):
    computer.desktop_mounts_after(10**6)
    card = computer.insert_card(computer.card_with_volume())
    before = computer.content(card)
    computer.write_up_to("at-the-prompt")
    computer.leave_running(f"exec flock /dev/{card.device}p1 sleep 1000")
    computer.answer_dialog()
    computer.expect_failure("The SD card is still in use by another process.")
    computer.expect_content(card, before)
