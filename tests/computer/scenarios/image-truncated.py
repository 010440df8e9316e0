"""The image is cut short while it is being written."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.choose_target()
    computer.write()
    computer.await_phase("Writing image data.")
    computer.as_person("truncate --size 1M /home/anna/sample.img")
    computer.expect_failure("could not be read at byte offset")
    computer.expect_released(card)
