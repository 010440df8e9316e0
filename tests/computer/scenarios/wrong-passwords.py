"""The user does not know the password."""
DESKTOPS = ("xfce", "plasma")  # GNOME asks without end


def play(computer):
    card = computer.insert_card()
    before = computer.content(card)
    computer.write_up_to("at-the-prompt")
    for _ in range(3):
        computer.answer_dialog("wrong horse")
        computer.rest(8)
    computer.expect_failure("Authentication failed or was cancelled, or the polkit rules of this computer forbid it.")
    computer.expect_released(card)
    computer.expect_content(card, before)
