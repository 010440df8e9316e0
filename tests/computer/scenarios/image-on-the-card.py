"""The image lies on the card that it is to be written to. The program says so at once, and refuses the write."""
PLACES = ("slot", "reader")

ON_THE_CARD = "image (file )?(is|lies|is stored|is located) on (this|the)( selected)? (SD )?card"


def play(computer, place):
    card = computer.insert(computer.card_with_volume(), place)
    computer.await_mount("CAMERA")
    computer.as_person("cp sample.img /media/anna/CAMERA/ && sync")
    before = computer.content(card)
    computer.choose_image("/media/anna/CAMERA/sample.img")
    computer.choose_target()
    computer.expect_match(ON_THE_CARD)
    computer.confirm_write()
    computer.expect_text("Image write failed")
    computer.expect_match(r"\d\d:\d\d.*" + ON_THE_CARD)  # in the log as well
    computer.expect_content(card, before)
    computer.expect_use(card, "is mounted: /media/anna/CAMERA")
