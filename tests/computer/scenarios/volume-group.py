"""The image holds a volume group, which the computer activates as soon as it finds it."""
PLACES = ("slot", "reader")

RECIPE = """printf 'label: dos\\nstart=2048, type=8e\\n' | sfdisk --quiet $image
    disk=$(losetup --find --show --partscan $image); udevadm settle
    pvcreate -q ${disk}p1; vgcreate -q group ${disk}p1; lvcreate -q -y -n volume -L 8M group
    mkfs.ext4 -q /dev/group/volume; vgchange -q -an group; losetup --detach $disk; udevadm settle
    rm -rf /run/lvm/pvs_online/* /run/lvm/vgs_online/* /run/lvm/pvs_lookup/*"""


def play(computer, place):
    computer.make_special_image(RECIPE, "24M")
    card = computer.insert(computer.blank_card(), place)
    computer.choose_target()
    computer.begin_journal()
    computer.write()
    computer.expect_safe_only_when_released(card, "part of a volume group, a RAID or an encrypted volume")
    computer.expect_in_journal("lvm-activate-group")
