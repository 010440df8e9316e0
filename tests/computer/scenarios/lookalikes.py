"""Disks whose names look a little like a card's are never offered."""

NAMES = [("SanDisk", "SSD PLUS"), ("Samsung", "SDSSD Extreme"), ("WD", "SD NVMe Adapter"), ("Kingston", "DataTraveler"),
         ("SDK", "HDD 2000")]


def play(computer):
    for vendor, product in NAMES:
        computer.plug_reader(vendor=vendor, product=product)
    computer.refresh()
    computer.expect_text("All whole disks are visible, but none passed every SD-card target safety check.")
    computer.click("check box", "Show All Disks")
    computer.expect_text("7 shown")
    computer.expect_text("0 selectable")
    computer.expect_none_selectable()
