"""The user copies the path of an image and pastes it into the desktop's panel."""


def play(computer):
    computer.as_person("cp sample.img another.img")
    computer.paste_image("another.img")
    card = computer.insert_card()
    computer.choose_target()
    computer.write()
    computer.expect_written(card)
