"""The administrator writes to the card's node while the image is being written, where verification does not look."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-writing")
    computer.overwrite_piece(card, at=100 << 20)
    computer.expect_failure("Another program is writing to this card.")
    computer.expect_never_shown("written and verified", "written, verified")
    computer.expect_closed(card)
