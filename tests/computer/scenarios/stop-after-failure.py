"""Verification has failed, and Stop is pressed while the card is being ejected. The failure stays on record."""


def play(computer):
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-verifying")
    computer.flip_bit(card, at=23 << 20)
    computer.hold_disk_service()  # reading the card does not need it, but ejecting does
    computer.await_process("diskutil")
    computer.stop()
    computer.release_disk_service()
    computer.expect_text("Operation cancelled.", timeout=180, never="SD Card Is Safe to Remove")
    computer.expect_text(f"Verification failed at byte offset {23 << 20}:", timeout=1)
    computer.expect_closed(card)
