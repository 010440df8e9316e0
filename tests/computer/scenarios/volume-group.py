"""The image holds a volume group, which the computer activates by itself as soon as it sees it."""
PLACES = ("slot", "reader")


def play(computer, place):
    computer.make_volume_group_image()
    card = computer.insert(computer.blank_card(), place)
    computer.choose_target()
    computer.write()
    computer.expect_safe_only_when_released(card, "part of a volume group, a RAID or an encrypted volume")
