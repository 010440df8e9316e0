"""The computer sleeps while the image is being written. Afterwards the write goes on with the same card, or ends because
nobody can know whether it is the same."""


def play(computer):
    computer.make_large_image("64M")
    [card] = computer.plug_reader(slow_to=2 << 20)
    computer.write_up_to("while-writing")
    computer.sleep_and_wake_up()
    computer.expect_safe_only_when_released(card, "The selected disk changed after it was scanned.")
    if "SD Card Is Safe to Remove" in computer.text_on_screen():
        computer.expect_card_holds(card)
