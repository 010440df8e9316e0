"""The utility that opens the card is killed while the password is asked for."""


def play(computer):
    card = computer.insert_card()
    before = computer.content(card)
    computer.write_up_to("at-the-prompt")
    computer.as_administrator("pkill --signal KILL --exact authopen")
    computer.expect_failure("before returning the raw device")
    if computer.is_password_asked():
        computer.answer_dialog()
    computer.rest(5)
    computer.expect_released(card)
    computer.expect_content(card, before)
