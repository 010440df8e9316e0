"""The user logs out while the image is being written."""


def play(computer):
    computer.make_large_image()
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-writing")
    computer.log_out()
    computer.expect_program_ended()
    computer.expect_released(card)
