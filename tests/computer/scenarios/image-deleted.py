"""The image is deleted after it was chosen."""


def play(computer):
    card = computer.insert_card()
    before = computer.content(card)
    computer.choose_target()
    computer.as_person("rm /home/anna/sample.img")
    computer.confirm_write()
    computer.expect_failure("The selected image file is unavailable.")
    computer.expect_content(card, before)
    computer.expect_released(card)
