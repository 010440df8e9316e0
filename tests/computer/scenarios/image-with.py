"""The image has a content that computers treat specially."""
CASES = ("raid-member", "encrypted-volume", "many-partitions", "no-partition")

RECIPES = {
    "raid-member": """printf 'label: dos\\nstart=2048, type=fd\\n' | sfdisk --quiet $image
        disk=$(losetup --find --show --partscan $image); udevadm settle
        mdadm --create /dev/md/image --run --force --level=1 --raid-devices=1 --metadata=1.2 ${disk}p1
        mdadm --stop /dev/md/image""",
    "encrypted-volume": """printf 'label: dos\\nstart=2048\\n' | sfdisk --quiet $image
        disk=$(losetup --find --show --partscan $image); udevadm settle; echo -n key > /tmp/key
        cryptsetup luksFormat -q --pbkdf pbkdf2 --pbkdf-force-iterations 1000 ${disk}p1 /tmp/key""",
    "many-partitions": """(echo label: gpt; for each in $(seq 60); do echo size=700; done) | sfdisk --quiet $image
        disk=$(losetup --find --show --partscan $image); udevadm settle; mkfs.vfat -n FIRST ${disk}p1""",
    "no-partition": "shred --iterations 1 $image",
}


def play(computer, content):
    computer.make_special_image(RECIPES[content])
    card = computer.insert_card()
    computer.choose_target()
    computer.begin_journal()
    computer.write()
    if content == "raid-member":  # which the computer activates automatically
        computer.expect_safe_only_when_released(card, "part of a volume group, a RAID or an encrypted volume")
        computer.expect_in_journal("md/raid1:.* active")
    else:
        computer.expect_success()
        computer.expect_released(card)
    computer.expect_card_holds_image(card, "special.img")
