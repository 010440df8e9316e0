"""The disk service is restarted, as by an update."""
CASES = ("at-the-prompt", "while-writing", "while-verifying", "while-ejecting")


def play(computer, when):
    [card] = computer.plug_reader(slow_to=2 << 20)
    before = computer.content(card)
    computer.write_up_to(when)
    computer.as_administrator("systemctl restart udisks2.service")
    if when == "at-the-prompt":
        computer.expect_failure("The authorized raw-device open failed: ")
        computer.expect_released(card)
        computer.expect_content(card, before)
    else:
        computer.expect_safe_only_when_released(card)
        computer.expect_card_holds(card)
