"""The image is larger than 4 GiB, and has data beyond that."""
BEYOND, WORDS = (4 << 30) + 12_345, "far behind"


def play(computer):
    computer.make_large_image("4100M")
    computer.as_person(f"printf '{WORDS}' | dd of=large.img bs=1 seek={BEYOND} conv=notrunc")
    [card] = computer.plug_reader(computer.blank_card("8G"))
    computer.choose_target()
    computer.write()
    computer.expect_success(timeout=1200)
    computer.expect_released(card)
    computer.expect_bytes(card, 0, bytes(32 << 20))
    computer.expect_bytes(card, BEYOND, WORDS.encode())
