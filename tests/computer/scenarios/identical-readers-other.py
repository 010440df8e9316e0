"""Two readers have the same names and the same serial number, so that the disk service takes them for one drive. Only the
chosen card is written and released, whatever the other one is used for."""
CASES = ("idle", "mounted", "written")


def play(computer, use):
    slowness = {"slow_to": 2 << 20} if use == "written" else {}
    [other] = computer.plug_reader(computer.card_with_volume(), serial="0001", **slowness)
    computer.await_mount("CAMERA")
    if use == "idle":
        computer.as_administrator("umount /media/anna/CAMERA")
    if use == "written":
        computer.make_large_image("128M")
        computer.write_up_to("while-writing")
        computer.start_program()
        computer.choose_image("sample.img")
    before = computer.content(other)
    [card] = computer.plug_reader(serial="0001")
    computer.expect_one_drive(card, other)
    computer.choose_target(f"disk{computer.number_of(card)}\\b")
    computer.write()
    computer.expect_success()
    computer.expect_released(card)
    computer.expect_card_holds_image(card, "sample.img")
    computer.expect_present(other)
    if use == "mounted":
        computer.expect_use(other, "is mounted: /media/anna/CAMERA")
    if use == "written":
        computer.as_person("pkill --newest --exact velmora-tessel")
        computer.rest(2)
        computer.expect_text("Image written and verified", timeout=400)
        computer.expect_released(other)
        computer.expect_card_holds(other)
    else:
        computer.expect_content(other, before)
