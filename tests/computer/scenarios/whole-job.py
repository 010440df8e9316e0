"""The user writes an image onto a card, has it verified, and pulls the card out."""
PLACES = ("slot", "reader")


def play(computer, place):
    card = computer.insert(computer.card_with_volume(), place)
    if place == "reader":
        computer.expect_listed(card)
    computer.choose_target()
    computer.write()
    computer.expect_written(card)
    computer.expect_left_alone(card)
