"""A slow USB stick is being unmounted, which takes the kernel minutes. Another card is listed and written meanwhile."""


def play(computer):
    stick = computer.plug_stick(computer.stick_with_volume(), slow_to=256 << 10)
    computer.await_mount("STICK")
    computer.as_administrator("head -c 80M /dev/urandom > /media/anna/STICK/film")
    computer.leave_running("umount /media/anna/STICK")  # not by the disk service, which would itself wait for it
    computer.await_unmounting(stick)
    card = computer.insert_card()
    computer.choose_target()
    computer.write()
    # The disk service itself may wait for the stick, and then not answer when the card is to be ejected.
    computer.expect_text("The media operation completed. Ejecting the SD card.")
    computer.await_unmounting(stick, timeout=1)  # still
    computer.expect_card_holds(card)
