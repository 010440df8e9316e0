"""The user presses Stop while the password is asked for. Only the user can close that dialog."""
CASES = ("then-dismissed", "then-answered")


def play(computer, answer):
    card = computer.insert_card()
    before = computer.content(card)
    computer.write_up_to("at-the-prompt")
    computer.stop()
    computer.expect_text("Answer or cancel it, and the operation stops.")
    if answer == "then-dismissed":
        computer.dismiss_dialog()
    else:
        computer.answer_dialog()
    computer.expect_text("Operation cancelled. Writing was interrupted.", never="SD Card Is Safe to Remove")
    computer.expect_released(card)
    computer.expect_content(card, before)
