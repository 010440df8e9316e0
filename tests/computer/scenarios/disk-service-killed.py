"""The disk service is killed while the image is being written, and starts again when it is asked."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-writing")
    computer.as_administrator("systemctl kill --signal=KILL udisks2.service")
    computer.expect_safe_only_when_released(card)
    computer.expect_card_holds(card)
