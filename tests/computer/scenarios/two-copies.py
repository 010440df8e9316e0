"""A second copy of the program is started, and is told to write the card that the first one is writing."""


def play(computer):
    computer.make_large_image("128M")
    [card] = computer.plug_reader(slow_to=1 << 20)
    computer.write_up_to("while-writing")
    computer.start_program()
    computer.choose_image("sample.img")
    computer.choose_target()
    computer.confirm_write()
    computer.expect_failure("busy")
    computer.as_person("pkill --newest --exact velmora-tessel")
    computer.rest(2)
    computer.expect_text("Image written and verified", timeout=400)
    computer.expect_released(card)
    computer.expect_card_holds(card)
