"""An old card holds less than any image that is worth writing."""


def play(computer):
    computer.insert_card(computer.blank_card("64M"))
    computer.expect_protected("The SD card is smaller than 512 MB.")
