"""The user leaves the password dialog open for longer than programs usually wait, and then dismisses it."""


def play(computer):
    card = computer.insert_card()
    before = computer.content(card)
    computer.choose_target()
    computer.confirm_write()
    computer.await_dialog()
    computer.rest(40)
    computer.dismiss_dialog()
    if computer.recipe.tells_of_cancel:
        computer.expect_text("Operation cancelled", never="SD Card Is Safe to Remove")
    else:
        computer.expect_failure("Authentication failed or was cancelled")
    computer.expect_released(card)
    computer.expect_content(card, before)
