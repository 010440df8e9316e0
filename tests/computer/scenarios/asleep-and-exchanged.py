"""The computer is put to sleep while the image is being written, and wakes up with another card of the same size."""
from story import CHANGED


def play(computer):
    computer.make_special_image("shred --iterations 1 $image")
    [chosen] = computer.plug_reader(slow_to=1 << 20)
    computer.write_up_to("while-writing")
    computer.fall_asleep()
    other = computer.exchange_card(chosen)
    before = computer.content(other)
    computer.wake_up()
    computer.expect_failure("asleep", CHANGED)
    computer.expect_never_shown("written and verified", "written, verified")
    computer.expect_closed(other)
    computer.expect_content(other, before)
