"""The computer sleeps after a minute without input, but not while an image is being written, which takes three."""


def play(computer):
    [card] = computer.plug_reader(slow_to=256 << 10)
    computer.write_up_to("while-writing")
    computer.desktop_sleeps_after_a_minute()
    computer.rest(90)
    computer.expect_awake()
    computer.expect_written(card)
    computer.expect_asleep(timeout=240)
