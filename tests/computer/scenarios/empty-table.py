"""The card has a partition table, but no partitions."""


def play(computer):
    card = computer.insert_card(computer.card_with_table("label: gpt\n"))
    computer.choose_target()
    computer.write()
    computer.expect_written(card)
