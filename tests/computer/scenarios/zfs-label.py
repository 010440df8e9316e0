"""The image looks like a part of a ZFS pool, which this computer could not use. The card is written like any other."""

# The numbers that begin a pool's uberblocks, of which udev's probe requires four.
RECIPE = """shred --iterations 1 $image
    for block in 128 129 130 131; do
        printf '\\014\\261\\272\\000\\000\\000\\000\\000' | dd of=$image bs=1K seek=$block conv=notrunc status=none; done
    test $(blkid --probe --match-tag TYPE --output value $image) = zfs_member"""


def play(computer):
    computer.make_special_image(RECIPE)
    card = computer.insert_card()
    computer.choose_target()
    computer.write()
    computer.expect_success()
    computer.expect_released(card)
    computer.expect_card_holds_image(card, "special.img")
    computer.as_administrator(f"udevadm info /dev/{card.device} | grep ID_FS_TYPE=zfs_member")
    computer.click("push button", "Done")
    computer.click("push button", "Clear")
    computer.choose_target()
