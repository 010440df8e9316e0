"""The image changes between its choice and the write."""
CASES = ("deleted", "grown", "replaced", "unreadable")

COMMANDS = {"deleted": "rm sample.img", "grown": "truncate --size +1M sample.img",
            "replaced": "head -c 1M /dev/urandom > other && truncate --size 24M other && mv other sample.img",
            "unreadable": "chmod 000 sample.img"}
FAILURES = {"deleted": "could not be inspected: No such file or directory.",
            "grown": "The selected image changed after it was selected.",
            "unreadable": "Permission denied"}


def play(computer, how):
    card = computer.insert_card()
    before = computer.content(card)
    computer.choose_target()
    computer.as_person(COMMANDS[how])
    computer.confirm_write()
    if how in ("replaced", "unreadable"):  # which only opening the image reveals
        computer.answer_dialog()
    if how == "replaced":
        computer.expect_success()
        computer.expect_card_holds_image(card, "sample.img")
    else:
        computer.expect_failure(FAILURES[how])
        computer.expect_content(card, before)
    computer.expect_released(card)
