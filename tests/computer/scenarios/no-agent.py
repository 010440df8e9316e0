"""The session has no program that could ask for the password."""
DESKTOPS = ("xfce", "plasma")  # on GNOME the shell itself asks


def play(computer):
    card = computer.insert_card()
    before = computer.content(card)
    computer.as_administrator(f"pkill --exact {computer.recipe.agent}")
    computer.choose_target()
    computer.confirm_write()
    computer.expect_failure("Nobody could be asked, because no authentication agent is running in this session.")
    computer.expect_content(card, before)
    computer.expect_released(card)
