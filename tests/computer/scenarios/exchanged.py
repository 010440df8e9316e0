"""Another card of the same size takes the place of the chosen one. Whenever that happens, it stays unchanged."""
from story import GONE

PLACES = ("slot", "reader")
CASES = ("before-the-click", "at-the-prompt", "while-writing", "while-verifying", "while-ejecting")


def play(computer, when, place):
    if when.startswith("while-"):
        computer.make_large_image("400M" if when == "while-writing" else "128M")
    chosen = computer.insert(computer.blank_card(), place)
    before = computer.content(chosen)
    computer.write_up_to(when)
    other = computer.exchange_card(chosen)
    computer.rest(5)
    if when == "before-the-click":
        computer.confirm_write()
    if when == "at-the-prompt":
        computer.answer_dialog()
    if when == "while-ejecting":
        computer.release_disk_service()
        computer.expect_safe_only_when_released(other)
        computer.expect_card_holds(chosen)
    else:
        computer.expect_failure(*GONE[when])
        computer.expect_released(other)
    if not when.startswith("while-"):
        computer.expect_content(chosen, before)
    computer.expect_content(other, before)
