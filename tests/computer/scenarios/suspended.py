"""The computer sleeps while the image is being written. Afterwards the card may be another one, so the write fails,
and the card is written again from the beginning."""
from story import CHANGED


def play(computer):
    computer.make_large_image("64M")
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-writing")
    computer.fall_asleep()
    computer.wake_up()
    computer.expect_failure("asleep", CHANGED)  # the kernel may also have given the disk a new number
    computer.expect_released(card)
    computer.pull_card(card)
    computer.insert_again(card)
    computer.click("push button", "Clear")
    computer.write_again()
    computer.expect_written(card)
