"""The desktop turns dark and its text larger while the program runs. The window follows."""
DESKTOPS = ("gnome", "plasma")  # Qt 6.4 takes over no colours of the themes of XFCE


def play(computer):
    light, small = computer.brightness(), computer.height_of("push button", "Refresh Disks")
    computer.turn_dark()
    computer.expect_darker_than(light)
    computer.enlarge_text()
    computer.expect_taller_than(small, "push button", "Refresh Disks")
    computer.picture("enlarged")
