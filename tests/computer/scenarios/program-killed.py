"""The program is killed while it writes. Started again, it writes the same card."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_until("Writing image data.")
    computer.as_administrator("pkill --signal KILL --exact velmora-tessel")
    computer.rest(5)
    computer.expect_closed(card)
    computer.start_program()
    computer.choose_image("sample.img")
    computer.write_again()
    computer.expect_written(card)
