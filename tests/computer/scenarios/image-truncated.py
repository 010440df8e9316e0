"""The image is cut short while it is being written."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-writing")
    computer.as_person("truncate --size 1M /home/anna/sample.img")
    computer.expect_failure("The selected image changed after it was selected.")
    computer.expect_released(card)
