"""The computer is switched off while the image is being written, and the program does not delay that."""


def play(computer):
    computer.make_large_image()
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-writing")
    computer.as_administrator("systemctl poweroff --no-block")
    computer.expect_switched_off()
