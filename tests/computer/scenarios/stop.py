"""The user presses Stop in the middle."""
CASES = {"while-writing": "Writing was interrupted.",
         "while-verifying": "Writing completed, but verification was interrupted."}
PLACES = ("slot", "reader")


def play(computer, when, place):
    computer.make_large_image("400M" if when == "while-writing" else "128M")
    card = computer.insert(computer.blank_card(), place)
    computer.write_up_to(when)
    computer.stop()
    computer.expect_text(f"Operation cancelled. {CASES[when]}", never="SD Card Is Safe to Remove")
    computer.expect_released(card)
