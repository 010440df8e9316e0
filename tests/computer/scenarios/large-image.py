"""The image is larger than 4 GiB, and has data beyond that."""


def play(computer):
    computer.make_large_image("4100M")
    [card] = computer.plug_reader(computer.blank_card("8G"))
    computer.choose_target()
    computer.write()
    computer.expect_success(timeout=1200)
    computer.expect_released(card)
    computer.expect_card_holds(card)
