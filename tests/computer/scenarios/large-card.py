"""The card holds 64 GB."""
PLACES = ("slot", "reader")


def play(computer, place):
    card = computer.insert(computer.blank_card("64G"), place)
    computer.choose_target("68.72 GB")
    computer.write()
    computer.expect_written(card)
