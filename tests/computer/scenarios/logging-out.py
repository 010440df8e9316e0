"""The user logs out while the image is being written."""


def play(computer):
    computer.make_large_image()
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-writing")
    computer.log_out()
    if computer.recipe.asks_windows_to_close:
        computer.agree_to_quit()
    computer.expect_program_ended()
    computer.expect_released(card)
