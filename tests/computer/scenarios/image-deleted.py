"""The image is deleted after it was chosen."""


def play(computer):
    card = computer.insert_card()
    before = computer.content(card)
    computer.choose_target()
    computer.as_person("rm /home/anna/sample.img")
    computer.confirm_write()
    computer.expect_failure("could not be inspected: No such file or directory.")
    computer.expect_content(card, before)
    computer.expect_released(card)
