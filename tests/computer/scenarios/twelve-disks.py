"""A reader has twelve slots, with a card in each. Only the chosen one is written."""


def play(computer):
    cards = computer.plug_reader(*[computer.blank_card() for _ in range(12)])
    before = computer.content(cards[0])
    computer.refresh()
    computer.expect_text("12 selectable")
    number = computer.number_of(cards[4])  # which the table shows without scrolling
    computer.choose_target(f"disk{number}\\b")
    computer.write()
    computer.expect_success()
    computer.expect_card_holds(cards[4])
    for card in cards:
        computer.expect_released(card)
        if card is not cards[4]:
            computer.expect_content(card, before)
