"""A folder of the running system lies on the card. Another card is written all the same."""


def play(computer):
    computer.desktop_mounts_after(10**6)
    systems = computer.insert_card(computer.card_with_volume())
    computer.as_administrator(f"mount /dev/{systems.device}p1 /opt && echo data > /opt/file")
    computer.expect_protected("The system has mounted a volume on it.")
    [card] = computer.plug_reader()
    computer.choose_target()
    computer.write()
    computer.expect_written(card)
    computer.expect_use(systems, "is mounted: /opt")
    computer.as_administrator("test $(cat /opt/file) = data")
