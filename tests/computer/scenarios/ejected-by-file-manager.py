"""The chosen card is ejected in the file manager. Put in again, it can be chosen and written."""


def play(computer):
    [card] = computer.plug_reader(computer.card_with_volume())
    computer.choose_target()
    computer.eject_in_file_manager(card, "CAMERA")
    computer.refresh()
    computer.expect_text("No positively identified SD card is currently available")
    computer.insert_again(card)
    computer.write_again()
    computer.expect_written(card)
