"""The program is killed while it writes. Started again, it writes the same card."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.choose_target()
    computer.write()
    computer.await_phase("Writing image data.")
    computer.as_administrator("pkill --signal KILL --exact velmora-tessel")
    computer.rest(5)
    computer.expect_closed(card)
    computer.start_program()
    computer.choose_image("sample.img")
    computer.choose_target()
    computer.confirm_write()
    computer.answer_dialog_if_asked()
    computer.expect_success()
    computer.expect_released(card)
    computer.expect_card_holds(card)
