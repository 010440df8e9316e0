"""The words in which scenarios are told: what the person does, and what is then expected."""
import pathlib
import re
import time

from guest import AGENT, PROGRAM, GuestError, matching
from image import PASSWORD
from machine import SLOT

READER = {"vendor": "Generic-", "product": "SD/MMC"}
PATIENCE = 60  # in seconds
IMAGES = "/home/anna"


class Unexpected(Exception):
    """What a scenario expected did not happen."""


class Card:
    """An SD card: a file of the host, and where it is plugged in."""

    def __init__(self, path, slot, device):
        self.path, self.slot, self.device = path, slot, device


class Computer:
    """A desktop computer with the program running, a native card slot, and USB readers to be plugged in."""

    def __init__(self, machine, guest, folder, image):
        self.machine, self.guest, self.folder, self.image = machine, guest, pathlib.Path(folder), image
        self.cards = 0
        self.readers = 0

    # Cards

    def blank_card(self, size="512M"):
        """A file that is a card's content, old data at its beginning."""
        self.cards += 1
        path = self.folder / f"card-{self.cards}.raw"
        bytes_of = {"K": 10, "M": 20, "G": 30}
        with open(path, "wb") as file:
            file.write(b"old data" * (1 << 17))
            file.truncate(int(size[:-1]) << bytes_of[size[-1]])
        return path

    def card_with_volume(self, size="512M", file_system="vfat"):
        """A card as it comes out of a camera: one partition with a file system."""
        from image import run
        path = self.blank_card(size)
        run("/sbin/sfdisk", "--quiet", path, input=b"label: dos\nstart=2048, type=c\n")
        if file_system == "vfat":
            run("/sbin/mkfs.vfat", "-n", "CAMERA", "--offset=2048", path, str((path.stat().st_size >> 10) - 1024),
                capture_output=True)
        else:
            run("/sbin/mkfs.ext4", "-q", "-F", "-L", "CAMERA", "-E", f"offset={2048 * 512},root_owner=1000:1000", path,
                f"{(path.stat().st_size >> 10) - 1024}k")
        return path

    def insert_card(self, content=None, write_protected=False):
        """Puts a card into the native slot."""
        path = content or self.blank_card()
        if write_protected:
            self.machine.set_write_protected("slot", path)
        else:
            self.machine.change_medium("slot", path)
        card = Card(path, "slot", "mmcblk0")
        self.await_device(card)
        return card

    def plug_reader(self, content=None, slow_to=None, bad_sector=None, **description):
        """Plugs in a USB reader with a card in it."""
        path = content or self.blank_card()
        self.readers += 1
        name = f"reader{self.readers}"
        before = set(self.guest.run("ls /sys/class/block").split())
        self.machine.add_medium(name + "-card", path, slow_to, bad_sector)
        self.machine.plug_reader(name, [name + "-card"], **(READER | description))
        end = time.monotonic() + PATIENCE
        while True:
            new = sorted(set(self.guest.run("ls /sys/class/block").split()) - before)
            if new:
                break
            if time.monotonic() > end:
                raise Unexpected("the reader did not appear")
            time.sleep(0.3)
        card = Card(path, name + "-0", new[0])
        card.reader = name
        self.await_device(card)
        return card

    def insert(self, card, where):
        """Puts a card of either kind where the word says: "slot" or "reader"."""
        return self.insert_card(card) if where == "slot" else self.plug_reader(card)

    def await_device(self, card):
        """Waits until the disk service knows the card and the desktop has mounted what it will."""
        self.guest.wait_until(f"test $(cat /sys/class/block/{card.device}/size) -gt 0", PATIENCE)
        self.guest.run("udevadm settle --timeout 60", 90)
        time.sleep(3)

    def pull_card(self, card):
        self.machine.remove_medium(card.slot)

    def reinsert(self, card):
        """Pulls the card out and inserts it again."""
        self.pull_card(card)
        time.sleep(2)
        self.machine.change_medium(card.slot, card.path)
        self.await_device(card)

    def exchange_card(self, card):
        """Replaces the card by another one of the same size."""
        path = self.blank_card()
        self.pull_card(card)
        time.sleep(1)
        self.machine.change_medium(card.slot, path)
        return Card(path, card.slot, card.device)

    # The screen

    def look(self, program=PROGRAM):
        return self.guest.look(program)

    def find(self, role, name, program=PROGRAM, timeout=PATIENCE):
        """Waits until something that can be used is shown."""
        end = time.monotonic() + timeout
        while True:
            found = matching(self.look(program), role, name)
            if found and found.is_enabled():
                return found
            if time.monotonic() > end:
                raise Unexpected(f"there is no {role} “{name}” that can be used")
            time.sleep(0.3)

    def click(self, role, name, program=PROGRAM, timeout=PATIENCE):
        """Clicks with the mouse, once the place has come to rest."""
        place = None
        while True:
            found = self.find(role, name, program, timeout)
            if found.place == place:
                break
            place = found.place
            time.sleep(0.2)
        self.machine.click(*found.center())

    def text_on_screen(self, program=PROGRAM):
        """Every text that the program shows, the log included."""
        return "\n".join(text for each in self.look(program) or [] for text in (each.name, each.text) if text)

    def expect_text(self, text, timeout=PATIENCE, never=None):
        """Waits until the text is shown. It is an error if another one is shown meanwhile."""
        end = time.monotonic() + timeout
        while True:
            shown = self.text_on_screen()
            if never and never in shown:
                raise Unexpected(f"“{never}” is shown")
            if text in shown:
                return
            if time.monotonic() > end:
                raise Unexpected(f"“{text}” is not shown; the log ends with “{self.last_words(shown)}”")
            time.sleep(0.3)

    def expect_no_text(self, text):
        if text in self.text_on_screen():
            raise Unexpected(f"“{text}” is shown")

    @staticmethod
    def last_words(shown):
        lines = [line for line in shown.splitlines() if re.match(r"\[?\d\d:\d\d", line)]
        return (lines or shown.splitlines() or ["nothing"])[-1]

    # What the person does

    def refresh(self):
        self.click("push button", "Refresh Disks")
        self.find("push button", "Refresh Disks")

    def choose_image(self, path=f"{IMAGES}/sample.img"):
        self.click("push button", "Select Image")
        self.find("text", "File name:|Name")
        self.machine.type(path + "\n")
        self.expect_text("Selected image: ")

    def choose_target(self, card=None):
        """Refreshes the list and chooses the only card, or the given one by its name."""
        self.refresh()
        self.click("radio button", "Select .*" + (card or ""))
        self.expect_text("Selected SD-card target: ")

    def expect_protected(self, reason):
        """The card is listed after a refresh, can't be chosen, and the log says why."""
        self.refresh()
        self.expect_text(reason)
        if matching(self.look(), "radio button", "Select "):
            raise Unexpected("the card can be chosen")

    def switch_verification_off(self):
        self.click("check box", "Verify the written image")
        end = time.monotonic() + PATIENCE
        while self.find("check box", "Verify the written image").is_checked():
            if time.monotonic() > end:
                raise Unexpected("verification stays on")

    def confirm_write(self):
        self.click("push button", "Write Disk Image")
        self.click("push button", "Erase and Write to ")

    def answer_dialog(self, password=PASSWORD):
        """Types the password into the desktop's dialog."""
        self.find("password text", "", AGENT)
        time.sleep(1)
        self.machine.type(password + "\n")

    def dismiss_dialog(self):
        self.find("password text", "", AGENT)
        time.sleep(1)
        self.machine.press("esc")

    def write(self):
        """From the button to the password."""
        self.confirm_write()
        self.answer_dialog()

    def stop(self):
        self.click("push button", "Stop")

    def await_phase(self, log_sentence):
        self.expect_text(log_sentence, timeout=120)

    # How it ends

    def expect_success(self, verified=True):
        self.expect_text("SD Card Is Safe to Remove", timeout=300, never="Image write failed")
        self.expect_text("The disk image was written" + (", verified, and" if verified else " and"))

    def expect_failure(self, sentence, timeout=180):
        self.expect_text("Image write failed", timeout, never="SD Card Is Safe to Remove")
        self.expect_text(sentence)

    def expect_card_holds(self, card, image=None):
        image = image or self.image
        with open(image, "rb") as wanted, open(card.path, "rb") as found:
            offset = 0
            while piece := wanted.read(1 << 20):
                if found.read(len(piece)) != piece:
                    raise Unexpected(f"the card's file differs from the image in the MiB at {offset}")
                offset += len(piece)

    def expect_card_untouched(self, card, before):
        with open(card.path, "rb") as found:
            if found.read(len(before)) != before:
                raise Unexpected("the card's file has changed")

    def expect_released(self, card):
        """Nobody on the computer uses the card any more."""
        uses = self.guest.uses_of(card.device)
        if uses:
            raise Unexpected("; ".join(uses))

    def expect_safe(self, card):
        """Whenever the program says that a card is safe to remove, nothing may hold it."""
        self.expect_released(card)

    def rest(self, seconds):
        time.sleep(seconds)


def resume(machine, guest):
    """Sets the clock and finds the native slot again, whose controller does not outlive a saved state."""
    guest.run(f"date --set @{int(time.time())}; echo 1 > /sys/bus/pci/rescan; "
              f"test -e /sys/bus/pci/devices/{SLOT}")


def suspend(guest):
    guest.run(f"echo 1 > /sys/bus/pci/devices/{SLOT}/remove; sync")


__all__ = ["Computer", "Card", "Unexpected", "GuestError", "resume", "suspend"]
