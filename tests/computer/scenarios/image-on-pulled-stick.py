"""The image lies on a USB stick that is pulled out while it is being read."""


def play(computer):
    stick = computer.plug_stick(computer.card_with_volume(), slow_to=4 << 20)
    computer.await_mount("CAMERA")
    computer.as_person("truncate --size 200M /media/anna/CAMERA/large.img && sync")
    computer.choose_image("/media/anna/CAMERA/large.img")
    card = computer.insert_card()
    computer.write_up_to("while-writing")
    computer.unplug_reader(stick)
    computer.expect_failure("The selected image could not be read at byte offset")
    computer.expect_released(card)
