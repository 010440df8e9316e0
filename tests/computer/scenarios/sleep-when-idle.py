"""The computer sleeps after a minute without input, but not while an image is being written, which takes three. Where it
can't sleep so soon, the desktop and the login service at least know when it may."""


def play(computer):
    [card] = computer.plug_reader(slow_to=256 << 10)
    computer.write_up_to("while-writing")
    sleeps = computer.desktop_sleeps_after_a_minute()
    computer.rest(90)
    computer.expect_awake()
    computer.expect_written(card)
    if sleeps:
        computer.expect_asleep(timeout=240)
    else:
        computer.expect_nothing_to_keep_it_awake()
