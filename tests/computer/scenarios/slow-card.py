"""The card is slow, and the window stays responsive."""


def play(computer):
    [card] = computer.plug_reader(slow_to=1 << 20)
    computer.write_up_to("while-writing")
    for _ in range(5):
        computer.expect_answer_within(10)
    computer.expect_written(card)
