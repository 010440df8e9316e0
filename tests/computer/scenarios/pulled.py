"""The card is pulled out before the end."""
from story import GONE

PLACES = ("slot", "reader")
CASES = ("before-the-click", "at-the-prompt", "while-writing", "while-verifying", "while-ejecting")


def play(computer, when, place):
    if when.startswith("while-"):
        computer.make_large_image("400M" if when == "while-writing" else "128M")
    card = computer.insert(computer.blank_card(), place)
    before = computer.content(card)
    computer.write_up_to(when)
    computer.pull_card(card)
    if when == "before-the-click":
        computer.confirm_write()
    if when == "at-the-prompt":
        computer.answer_dialog()
    if when == "while-ejecting":
        computer.release_disk_service()
        computer.expect_safe_only_when_released(card)
        return computer.expect_card_holds(card)
    computer.expect_failure(*GONE[when])
    computer.expect_text(" is gone: the SD card was removed, or its reader was disconnected.")
    computer.expect_released(card)
    if not when.startswith("while-"):
        computer.expect_content(card, before)
