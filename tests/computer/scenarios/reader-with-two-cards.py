"""A reader has two slots. After the first card has been ejected the second one is still there, and is written."""


def play(computer):
    first, second = computer.plug_reader(computer.blank_card(), computer.blank_card())
    before = computer.content(second)
    computer.choose_target(f"disk{computer.number_of(first)}\\b")
    computer.write()
    computer.expect_written(first)
    computer.expect_content(second, before)
    computer.click("push button", "Done")
    computer.click("push button", "Clear")
    computer.write_again(f"disk{computer.number_of(second)}\\b")
    computer.expect_written(second)
    computer.expect_card_holds(first)
