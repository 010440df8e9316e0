"""The desktop has mounted the card, and a program has a file on it open."""


def play(computer):
    card = computer.insert_card(computer.card_with_volume())
    computer.await_mount("CAMERA")
    computer.start_as_person("sh -c 'exec sleep 1000 > /media/anna/CAMERA/notes'")
    computer.choose_target()
    computer.confirm_write()
    computer.expect_failure("busy")
    computer.await_mount("CAMERA")
    computer.expect_use(card, "is mounted")
