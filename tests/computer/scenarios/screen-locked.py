"""The screen is locked while the image is being written. The write ends behind it."""


def play(computer):
    computer.record_notifications()
    [card] = computer.plug_reader(slow_to=1 << 20)
    computer.write_up_to("while-writing")
    computer.lock_screen()
    computer.expect_written(card)
    computer.expect_notification("SD Card Is Safe to Remove")
    computer.unlock_screen()
    computer.click("push button", "Done")
