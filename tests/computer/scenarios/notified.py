"""The user turns to the file manager while the image is being written, and is told of the end by a notification."""


def play(computer):
    computer.open_file_manager()
    computer.record_notifications()
    [card] = computer.plug_reader(slow_to=512 << 10)
    computer.write_up_to("while-writing")
    computer.turn_to_file_manager()
    computer.expect_success()
    computer.expect_notification("SD Card Is Safe to Remove")
    computer.picture("notification")
    computer.expect_card_holds(card)
