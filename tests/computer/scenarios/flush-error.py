"""The card does not confirm that it has stored everything."""


def play(computer):
    [card] = computer.plug_reader(fails=("flush", None))
    computer.as_administrator(
        f"echo temporary write back > $(ls /sys/block/{card.device}/device/scsi_disk/*/cache_type)")
    computer.choose_target()
    computer.write()
    computer.expect_failure("The completed image could not be synchronized to the SD card: ")
    computer.expect_released(card)
