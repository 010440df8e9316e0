"""The user does not know the password. The card, which has been unmounted by then, is ejected, and can be written after
it has been taken out and put in again."""


def play(computer):
    [card] = computer.plug_reader()
    before = computer.content(card)
    computer.write_up_to("at-the-prompt")
    for _ in range(3):
        computer.answer_dialog("wrong horse")
        computer.rest(8)
    if computer.recipe.asks_without_end:
        computer.dismiss_dialog()
        computer.expect_text("Operation cancelled", never="SD Card Is Safe to Remove")
    else:
        computer.expect_failure("Authentication failed")
        computer.expect_text("insert it again")
        computer.write_in_vain()
        computer.expect_never_shown("the SD card was removed, or its reader was disconnected")
    computer.expect_content(card, before)
    computer.pull_card(card)
    computer.insert_again(card)
    computer.click("push button", "Clear")
    computer.write_again()
    computer.expect_written(card)
