"""Somebody writes an image onto a card in the computer's own slot, has it verified, and pulls the card out."""


def play(computer):
    card = computer.insert_card(computer.card_with_volume())
    computer.choose_image()
    computer.choose_target()
    computer.write()
    computer.expect_success(verified=True)
    computer.expect_released(card)
    computer.expect_card_holds(card)
