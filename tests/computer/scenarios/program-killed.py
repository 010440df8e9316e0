"""The program is killed. Started again, it writes the same card."""
CASES = ("at-the-prompt", "while-writing", "while-verifying")


def play(computer, when):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to(when)
    computer.as_administrator("pkill --signal KILL --exact velmora-tessel")
    if when == "at-the-prompt":
        computer.answer_dialog()  # which is still open
    computer.rest(5)
    computer.expect_closed(card)
    computer.start_program()
    computer.choose_image("sample.img")
    computer.write_again()
    computer.expect_written(card)
