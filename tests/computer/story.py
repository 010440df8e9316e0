"""The vocabulary of scenarios: what the user does, and what is then expected."""
import hashlib
import pathlib
import re
import subprocess
import time

from desk import Desk
from desktops import PERSON
from guest import PROGRAM, matching
from image import PASSWORD, run
from machine import SLOT
from waiting import PATIENCE, Unexpected, wait_until

HEADER, MARGIN = 80, 12  # the parts of the window's height that its cards never take, in pixels
PANEL_OPENS = 6  # in seconds, on a slow computer
IMAGES = f"/home/{PERSON}"
MOUNTED = f"/media/{PERSON}"
JOURNAL = "/tmp/journal-cursor"

PHASES = {"while-writing": "Writing image data.", "while-verifying": "Verifying the image",
          "while-ejecting": "Ejecting the SD card."}  # with the log message when each begins
CHANGED = "The selected disk changed after it was scanned."
# Messages after the card is removed then. A transfer ends by the error or by the kernel's notice, whichever is first.
GONE = {"before-the-click": [CHANGED],
        "at-the-prompt": ["The authorized raw-device open failed: "],
        "while-writing": ["The SD-card write did not complete at byte offset", CHANGED],
        "while-verifying": ["The SD card could not be read for verification at byte offset", CHANGED]}
NOT_EJECTED = "The image was written, but the SD card could not be ejected."
DOT = "●"  # stands for a letter of a password
LAYER = "layer"  # the name of a disk that lies above another one
# The locks that programs take on a disk: partitioning tools the first kind, virtual machines the second.
LOCKS = {"exclusive": "flock(disk, fcntl.LOCK_EX)", "byte-range": "lockf(disk, fcntl.LOCK_SH, 1, 100)"}


class Card:
    """An SD card: a file of the host, and where it is plugged in."""

    def __init__(self, path, slot, device, reader=None):
        self.path, self.slot, self.device, self.reader = path, slot, device, reader


class Computer(Desk):
    """A desktop computer with the program running, a native card slot, and USB readers to be plugged in."""

    def __init__(self, machine, guest, folder, image):
        self.machine, self.guest, self.folder, self.image = machine, guest, pathlib.Path(folder), image
        self.recipe = machine.recipe
        self.cards = 0
        self.readers = 0

    # Cards

    def blank_card(self, size="512M"):
        """Makes the file of a card, with old data at its beginning."""
        self.cards += 1
        path = self.folder / f"card-{self.cards}.raw"
        with open(path, "wb") as file:
            file.write(b"old data" * (1 << 17))
            file.truncate(self.size_in_bytes(size))
        return path

    @staticmethod
    def size_in_bytes(size):
        return int(size[:-1]) << {"K": 10, "M": 20, "G": 30}[size[-1]]

    def card_with_volume(self, size="512M"):
        """Makes a card as it comes out of a camera: one partition with a file system."""
        path = self.card_with_table("label: dos\nstart=2048, type=c\n", size)
        run("/sbin/mkfs.vfat", "-n", "CAMERA", "--offset=2048", path, str((path.stat().st_size >> 10) - 1024),
            capture_output=True)
        return path

    def stick_with_volume(self, size="512M"):
        """Makes the content of a USB stick: one file system, which the kernel writes with a delay."""
        path = self.blank_card(size)
        run("/sbin/mkfs.ext4", "-q", "-F", "-L", "STICK", path)
        return path

    def card_with_table(self, table, size="512M"):
        path = self.blank_card(size)
        run("/sbin/sfdisk", "--quiet", path, input=table.encode())
        return path

    def insert_card(self, content=None):
        """Puts a card into the native slot."""
        path = content or self.blank_card()
        self.machine.change_medium("slot", path)
        card = Card(path, "slot", "mmcblk0")
        self.await_devices([card])
        return card

    def plug_reader(self, *contents, vendor="Generic-", product="SD/MMC", serial=None, **faults):
        """Plugs in a USB reader with a card in each of its slots, and returns the cards. All have the
        faults, which are parameters of `Machine.add_medium`."""
        paths = contents or [self.blank_card()]
        self.readers += 1
        reader = f"reader{self.readers}"
        before = self.block_devices()
        nodes = [f"{reader}-card{index}" for index in range(len(paths))]
        for node, path in zip(nodes, paths):
            self.machine.add_medium(node, path, **faults)
        self.machine.plug_reader(reader, nodes, vendor, product, serial)

        def all_new():
            new = sorted(self.block_devices() - before)
            return len(new) >= len(paths) and new

        cards = [Card(path, f"{reader}-{index}", device, reader)
                 for index, (path, device) in enumerate(zip(paths, wait_until(all_new, "the reader did not appear")))]
        self.await_devices(cards)
        return cards

    def plug_stick(self, content, **faults):
        """Plugs in a USB stick, which is never taken for an SD card."""
        return self.plug_reader(content, vendor="Kingston", product="DataTraveler", **faults)[0]

    def block_devices(self):
        """Returns the disks of the computer other than its own."""
        return set(self.guest.run("cd /sys/block; ls -d sd* mmcblk* 2>/dev/null || true").split())

    def insert(self, card, where):
        """Puts a card into the "slot" or into a new "reader"."""
        return self.insert_card(card) if where == "slot" else self.plug_reader(card)[0]

    def await_devices(self, cards):
        """Waits until the disk service lists the cards and the desktop has had time to mount them."""
        for card in cards:
            self.guest.await_success(f"test $(cat /sys/class/block/{card.device}/size) -gt 0", PATIENCE)
        self.guest.run("udevadm settle --timeout 60", 90)
        time.sleep(3)

    def pull_card(self, card):
        self.machine.remove_medium(card.slot)

    def unplug_reader(self, card):
        self.machine.command("device_del", id=card.reader)

    def insert_again(self, card):
        """Puts a card that was pulled back into its slot, without its faults."""
        self.machine.change_medium(card.slot, card.path)
        self.await_devices([card])

    def exchange_card(self, card):
        """Replaces the card by another one of the same size."""
        path = self.blank_card()
        self.pull_card(card)
        time.sleep(1)
        self.machine.change_medium(card.slot, path)
        return Card(path, card.slot, card.device, card.reader)

    # The screen

    def find(self, role, name, program=PROGRAM, timeout=PATIENCE):
        """Waits until the object is shown and can be used. Returns it and its window."""
        def found():
            shown = self.guest.look(program)
            item = matching(shown, role, name)
            return item and item.is_enabled() and (item, matching(shown, "frame", ""))

        return wait_until(found, f"there is no {role} “{name}” that can be used", timeout)

    def click(self, role, name):
        """Clicks with the mouse, once the object is in sight and does not move any more; where no positions are told,
        does what a click would do."""
        if not self.recipe.tells_positions:
            return self.guest.act_on(self.find(role, name)[0])

        def at_rest():
            found, window = self.find(role, name)
            is_in_sight = not self.scroll_to(found, window)
            return is_in_sight and self.guest.place_of(found) == found.place and found

        found = wait_until(at_rest, f"the {role} “{name}” does not come to rest", pause=0)
        self.machine.click(*found.center())

    def scroll_to(self, item, window):
        """Turns the wheel by a notch if the item of the window's left pane is not in sight, and returns whether it did."""
        if not window:
            return False
        left, top, width, height = window.place
        x, y = item.center()
        bottom = top + height - MARGIN
        if y < bottom and (y >= top + HEADER or item.role != "radio button"):
            return False
        self.machine.wheel(x, top + height // 2, down=y >= bottom)
        return True

    def text_on_screen(self):
        """Returns every text that the program shows, including the log."""
        return "\n".join(text for each in self.guest.look() or [] for text in (each.name, each.text) if text)

    def expect_text(self, *texts, timeout=PATIENCE, never=None):
        """Waits until one of the texts is shown, and returns everything that is shown then. Fails if the text `never`
        is shown meanwhile."""
        def is_one_in(shown):
            if never and never in shown:
                raise Unexpected(f"“{never}” is shown")
            return any(text in shown for text in texts)

        return self.expect_shown(is_one_in, texts[0], timeout)

    def expect_match(self, pattern, timeout=PATIENCE):
        """Waits until a text is shown that matches a regular expression."""
        self.expect_shown(lambda shown: re.search(pattern, shown), pattern, timeout)

    def expect_shown(self, is_right, wanted, timeout):
        """Waits until everything that is shown is right, and returns it."""
        shown = ""

        def is_shown():
            nonlocal shown
            shown = self.text_on_screen()
            return is_right(shown)

        wait_until(is_shown, lambda: f"“{wanted}” is not shown; the log ends with “{self.last_words(shown)}”", timeout)
        return shown

    def expect_never_shown(self, *texts):
        self.expect_running()
        shown = self.text_on_screen()
        for text in texts:
            if text in shown:
                raise Unexpected(f"“{text}” is shown")

    @staticmethod
    def last_words(shown):
        lines = [line for line in shown.splitlines() if re.match(r"\[?\d\d:\d\d", line)]
        return (lines or shown.splitlines() or ["nothing"])[-1]

    # What the user does

    def refresh(self):
        self.click("push button", "Refresh Disks")
        self.find("push button", "Refresh Disks")

    def choose_image(self, name):
        """Chooses an image other than the sample, which is already chosen when a scenario begins."""
        path = self.type_into_panel(name)
        self.machine.press("ret")
        self.find("push button", "Select Image")
        self.expect_text(f"Selected image: {path} ")

    def open_panel(self):
        self.click("push button", "Select Image")
        time.sleep(PANEL_OPENS)

    def type_into_panel(self, name):
        """Types the path of an image into the desktop's panel, and returns the path."""
        path = f"{pathlib.PurePosixPath(IMAGES, name)}"
        self.open_panel()
        self.type_exactly(path, PROGRAM)
        return path

    def paste_image(self, name):
        """Types the path into the panel, copies it there, and pastes it into another panel."""
        path = self.type_into_panel(name)
        for keys in (("ctrl", "a"), ("ctrl", "c"), ("esc",)):
            self.machine.press(*keys)
            time.sleep(2)
        if not matching(self.guest.look(), "push button", "Select Image").is_enabled():
            self.machine.press("esc")  # the first one only left the field
        self.open_panel()
        self.machine.press("ctrl", "v")
        self.expect_typed(path, PROGRAM)
        self.machine.press("ret")
        self.expect_text(f"Selected image: {path} ")

    def type_exactly(self, text, program, shown=None):
        """Types into the field that has the focus, and up to twice more if something else stands there: a slow computer
        repeats keys and loses them."""
        for _ in range(2):
            self.machine.type(text)
            try:
                return self.expect_typed(shown or text, program)
            except Unexpected:
                self.machine.press("ctrl", "a")
        self.machine.type(text)
        self.expect_typed(shown or text, program)

    def expect_typed(self, text, program):
        typed = []

        def is_typed():
            typed[:] = self.guest.typed_into(program)
            return text in typed

        wait_until(is_typed, lambda: f"{program} shows {typed}, not {text}", PATIENCE / 6)

    def image_on_suspendable_disk(self, size):
        """Puts an image onto a USB stick, on a layer that can be told not to answer any more, and chooses it."""
        self.desktop_mounts_after(10**6)
        disk = f"/dev/{self.plug_stick(self.stick_with_volume()).device}"
        self.guest.run(f"""set -e; echo "0 $(blockdev --getsz {disk}) linear {disk} 0" | dmsetup create {LAYER}
            mount /dev/mapper/{LAYER} /mnt; head -c {size} /dev/urandom > /mnt/large.img; sync""", 120)
        self.choose_image("/mnt/large.img")

    def hang_disk_of_image(self):
        """Makes every read of the image hang from now on, even of its size."""
        self.guest.run(f"echo 3 > /proc/sys/vm/drop_caches; dmsetup suspend --noflush --nolockfs {LAYER}")

    def free_disk_of_image(self):
        self.guest.run(f"dmsetup resume {LAYER}")

    def make_large_image(self, size="400M"):
        """Puts an image onto the computer, large enough to take a while, and chooses it. Each MiB begins in another
        way."""
        make = f"""python3 -c 'import sys
with open(sys.argv[1], "wb") as file:
    for offset in range(0, {self.size_in_bytes(size)}, 1 << 20):
        file.seek(offset)
        file.write(b"%12d" % offset * 100)
    file.truncate({self.size_in_bytes(size)})' """
        self.image = self.folder / "large.raw"
        subprocess.run(f"{make} {self.image}", shell=True, check=True)
        self.as_person(f"{make} large.img")
        self.choose_image("large.img")

    def make_special_image(self, recipe, size="64M"):
        """Puts an image onto the computer that a command makes of $image, and chooses it. The command may attach it
        to a loop device, $disk."""
        self.guest.run(f"""set -e; image={IMAGES}/special.img; truncate --size {size} $image
            {recipe}
            udevadm settle; losetup --detach-all; udevadm settle; chown {PERSON} $image""", 240)
        self.choose_image("special.img")

    def choose_target(self, name=""):
        """Refreshes the list and chooses the first card whose name contains the text."""
        self.refresh()
        self.click("radio button", "Select .*" + name)
        self.expect_text("Selected SD-card target: ")
        self.picture("window")

    def expect_protected(self, reason):
        """Expects that the card is listed after a refresh but can't be chosen, and that the log says why."""
        self.refresh()
        self.expect_text(reason)
        self.expect_none_selectable()

    def switch_verification_off(self):
        self.click("check box", "Verify the written image")
        wait_until(lambda: not self.find("check box", "Verify the written image")[0].is_checked(),
                   "verification stays on")

    def confirm_write(self):
        self.click("push button", "Write Disk Image")
        self.find("push button", "Erase and Write to ")
        time.sleep(1)
        self.picture("confirmation")
        self.click("push button", "Erase and Write to ")

    def await_dialog(self):
        """Waits until the desktop's dialog asks for the password, and returns its text field."""
        field, _ = self.find(self.recipe.password_field, "", self.recipe.agent)
        time.sleep(1)
        self.picture("password")
        return field

    def turn_to_dialog(self):
        """Clicks into the dialog's field; without a mouse, the dialog must have taken the keyboard."""
        field = self.await_dialog()
        if self.recipe.tells_positions:
            field.place = self.guest.place_of(field, self.recipe.agent)
            self.machine.click(*field.center())

    def answer_dialog(self, password=PASSWORD):
        self.turn_to_dialog()
        self.type_exactly(password, self.recipe.agent, DOT * len(password))
        self.machine.press("ret")

    def answer_dialog_if_asked(self, writes):
        """Answers the dialog unless the next write begins without it: the desktop may remember for a while that the
        password was right."""
        wait_until(lambda: self.writes_begun() > writes or self.is_password_asked(),
                   "neither is the password asked for nor does the write begin")
        if self.writes_begun() <= writes:
            self.answer_dialog()

    def is_password_asked(self):
        return matching(self.guest.look(self.recipe.agent), self.recipe.password_field, "") is not None

    def writes_begun(self):
        return self.text_on_screen().count(PHASES["while-writing"])

    def dismiss_dialog(self):
        self.turn_to_dialog()
        self.machine.press("esc")

    def write(self):
        """Presses the button, confirms the write and answers the dialog."""
        self.confirm_write()
        self.answer_dialog()

    def write_up_to(self, phase):
        """Chooses the card and writes until the phase has begun. It lasts until release_disk_service() if that is
        the ejecting."""
        self.choose_target()
        if phase == "before-the-click":
            return
        self.confirm_write()
        if phase == "at-the-prompt":
            return self.await_dialog()
        self.answer_dialog()
        if phase == "while-ejecting":
            self.expect_text(PHASES["while-verifying"], timeout=300)
            self.hold_disk_service()
        self.expect_text(PHASES[phase], timeout=300)
        if phase == "while-ejecting":
            self.expect_never_shown("SD Card Is Safe to Remove", "Image write failed")

    def write_again(self, name=""):
        """Chooses the card and writes once more."""
        self.choose_target(name)
        writes = self.writes_begun()
        self.confirm_write()
        self.answer_dialog_if_asked(writes)

    def stop(self):
        self.click("push button", "Stop")

    def close_window(self):
        self.machine.press("alt", "f4")

    def agree_to_quit(self):
        self.click("push button", "Stop and Quit")

    def write_in_vain(self):
        """Presses the button for a write that can't begin, and waits until it can be pressed again."""
        self.click("push button", "Clear")
        self.confirm_write()
        self.expect_text("Revalidating /dev/disk")
        self.find("push button", "Write Disk Image")

    # How it ends

    def expect_success(self, verified=True, timeout=300):
        self.expect_text("SD Card Is Safe to Remove", timeout=timeout, never="Image write failed")
        self.expect_text("The disk image was written" + (", verified, and" if verified else " and"))

    def expect_written(self, card, verified=True):
        """Expects that the write succeeds, and that the card is released and holds the image."""
        self.expect_success(verified)
        self.expect_released(card)
        self.expect_card_holds(card)

    def expect_failure(self, *sentences, timeout=180):
        self.expect_text("Image write failed", timeout=timeout, never="SD Card Is Safe to Remove")
        self.expect_text(*sentences)

    def expect_card_holds(self, card, image=None):
        image = image or self.image
        with open(image, "rb") as wanted, open(card.path, "rb") as found:
            offset = 0
            while piece := wanted.read(1 << 20):
                if found.read(len(piece)) != piece:
                    raise Unexpected(f"the card's file differs from the image in the MiB at {offset}")
                offset += len(piece)

    def expect_card_holds_image(self, card, name):
        """Compares the card with an image that exists only on the computer."""
        size, digest = self.guest.run(f"cd {IMAGES}; stat --format %s {name}; sha256sum {name} | cut -d ' ' -f 1").split()
        with open(card.path, "rb") as file:
            if hashlib.sha256(file.read(int(size))).hexdigest() != digest:
                raise Unexpected(f"the card's file differs from {name}")

    @staticmethod
    def expect_bytes(card, offset, wanted):
        with open(card.path, "rb") as file:
            file.seek(offset)
            if file.read(len(wanted)) != wanted:
                raise Unexpected(f"the card's file holds other bytes than expected from {offset} on")

    @staticmethod
    def content(card):
        """Returns a digest of the whole of the card's file."""
        with open(card.path, "rb") as file:
            return hashlib.file_digest(file, "sha256").hexdigest()

    def expect_content(self, card, before):
        if self.content(card) != before:
            raise Unexpected(f"the file of the card in {card.slot} has changed")

    @staticmethod
    def spoil(card):
        """Overwrites the card unnoticed, so that only another write can correct it."""
        with open(card.path, "r+b") as file:
            file.seek(20 << 20)
            file.write(b"spoilt" * 1000)

    @staticmethod
    def flip_bit(card, at):
        with open(card.path, "r+b") as file:
            file.seek(at)
            byte = file.read(1)[0]
            file.seek(at)
            file.write(bytes([byte ^ 4]))

    @staticmethod
    def forget_beyond(card, offset):
        """Loses the content of the card from the offset on."""
        size = card.path.stat().st_size
        with open(card.path, "r+b") as file:
            file.truncate(offset)
            file.truncate(size)

    def expect_closed(self, card):
        """Expects that no program has the card open; it may be mounted."""
        uses = [use for use in self.guest.uses_of(card.device) if " is open in " in use]
        if uses:
            raise Unexpected("; ".join(uses))

    def expect_use(self, card, words):
        uses = self.guest.uses_of(card.device)
        if not any(words in use for use in uses):
            raise Unexpected(f"the card's uses are {uses}")

    def expect_present(self, card):
        """Expects that the card is still in its slot and has not been ejected."""
        if not self.machine.has_medium(card.slot) or not int(self.guest.run(f"cat /sys/block/{card.device}/size")):
            raise Unexpected(f"the card in {card.slot} has been ejected")

    def expect_one_drive(self, *cards):
        """Expects that the disk service takes the cards for those of one drive."""
        drives = {self.guest.run("busctl get-property org.freedesktop.UDisks2 /org/freedesktop/UDisks2/block_devices/"
                                 f"{card.device} org.freedesktop.UDisks2.Block Drive") for card in cards}
        if len(drives) > 1:
            raise Unexpected(f"the cards are in different drives: {drives}")

    def expect_partitions(self, card, count, timeout=180):
        """Waits until the computer lists the partitions of the written image, so that it may mount them."""
        self.guest.await_success(f"test $(ls -d /sys/block/{card.device}/{card.device}* | wc -l) -eq {count}", timeout)

    def expect_disabled(self, role, name):
        found = matching(self.guest.look(), role, name)
        if not found or found.is_enabled():
            raise Unexpected(f"the {role} “{name}” can be used")

    def expect_running(self):
        """Expects that the program runs, and returns everything that it shows."""
        if (shown := self.guest.look()) is None:
            raise Unexpected("the program does not run")
        return shown

    def expect_none_selectable(self):
        if matching(self.expect_running(), "radio button", "Select "):
            raise Unexpected("a disk can be chosen")

    def expect_program_ended(self, timeout=120):
        # An ended process remains a zombie if its parent does not wait for it.
        self.guest.await_success("! ps -C velmora-tessel -o stat= | grep -v Z", timeout)

    def expect_released(self, card):
        """Expects that nothing on the computer uses the card any more."""
        uses = self.guest.uses_of(card.device)
        if uses:
            raise Unexpected("; ".join(uses))

    def expect_answer_within(self, seconds):
        """Expects the window to answer a screen reader in time."""
        begun = time.monotonic()
        self.expect_running()
        if (taken := time.monotonic() - begun) > seconds:
            raise Unexpected(f"the window took {taken:.1f} s to answer")

    def expect_safe_only_when_released(self, card, refusal=NOT_EJECTED, seconds=25):
        """Expects that the write ends with the card released for good, or with the refusal to call it safe."""
        if "Image write failed" in self.expect_text("SD Card Is Safe to Remove", "Image write failed", timeout=300):
            return self.expect_text(refusal)
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self.expect_released(card)

    def rest(self, seconds):
        time.sleep(seconds)

    # What else happens on the computer

    def as_administrator(self, command, timeout=120):
        return self.guest.run(command, timeout)

    def leave_running(self, command):
        """Starts a command as the administrator, without waiting for it."""
        self.guest.run(f"setsid sh -c '{command}' >/dev/null 2>&1 </dev/null & sleep 2")

    def as_person(self, command):
        return self.guest.run_as_person(f"cd {IMAGES} && {command}")

    def lock(self, card, kind):
        """Locks the card's node by a program of the administrator, which keeps the lock."""
        self.leave_running(f"""exec python3 -c "import fcntl, time; disk = open(\\"/dev/{card.device}\\", \\"r+b\\", 0)
fcntl.{LOCKS[kind]}; time.sleep(1000)" """)

    def overwrite_piece(self, card, at):
        """Writes a MiB to the card's node as the administrator, which can't be prevented without a lock."""
        self.guest.run(f"dd if=/dev/zero of=/dev/{card.device} bs=1M count=1 seek={at >> 20} oflag=direct conv=notrunc")

    def start_program(self):
        self.guest.start_as_person("velmora-tessel")
        self.find("push button", "Refresh Disks", timeout=120)

    def start_as_person(self, command):
        self.guest.start_as_person(command)

    def expect_switched_off(self, timeout=80):
        """Expects that the computer switches itself off. A program that ignored SIGTERM would delay that by 90 s."""
        try:
            self.machine.process.wait(timeout)
        except subprocess.TimeoutExpired:
            raise Unexpected(f"the computer is still on after {timeout} s") from None

    def fall_asleep(self):
        """Puts the computer to sleep by a command, because the emulated keyboard's key has no effect."""
        self.guest.run("systemctl suspend --no-block")
        self.machine.wait_for_status("query-status", "suspended", PATIENCE)
        time.sleep(5)

    def wake_up(self):
        self.machine.command("system_wakeup")
        self.machine.wait_for_status("query-status", "running", PATIENCE)

    def hold_disk_service(self):
        """Stops the disk service from answering until release_disk_service()."""
        self.guest.run("systemctl kill --signal STOP udisks2.service")

    def release_disk_service(self):
        self.guest.run("systemctl kill --signal CONT udisks2.service")

    def await_process(self, name):
        self.guest.await_success(f"pgrep --exact {name}", 120)

    def await_mount(self, label):
        """Waits until the desktop has mounted the volume. Where it leaves that to the user, the user does it."""
        if not self.recipe.mounts_by_itself:
            self.guest.run_as_person(f"mountpoint -q {MOUNTED}/{label} || "
                                     f"udisksctl mount --block-device /dev/disk/by-label/{label}")
        self.guest.await_success(f"mountpoint -q {MOUNTED}/{label}", PATIENCE)

    def await_unmounting(self, stick, timeout=PATIENCE):
        """Waits until the stick is mounted nowhere any more, while the kernel still writes its file system."""
        self.guest.await_success(f"! grep -q ^/dev/{stick.device} /proc/mounts && test -e /proc/fs/ext4/{stick.device}",
                                 timeout)

    def begin_journal(self):
        """Makes expect_in_journal() look only at what comes from now on."""
        self.guest.run(f"journalctl --cursor-file {JOURNAL} --lines 1 >/dev/null")

    def expect_in_journal(self, pattern):
        """Waits until a line since begin_journal() matches the extended regular expression."""
        self.guest.await_success(f"cp {JOURNAL} {JOURNAL}.read; journalctl --cursor-file {JOURNAL}.read | "
                                 f"grep --quiet --extended-regexp '{pattern}'")

    def number_of(self, card):
        """Returns the number in the program's name for the card's disk."""
        return int(self.guest.run(f"cat /sys/class/block/{card.device}/diskseq"))


def resume(machine, guest):
    """Sets the clock and finds the native slot again, whose controller does not outlive a saved state."""
    guest.run(f"date --set @{int(time.time())}; echo 1 > /sys/bus/pci/rescan; "
              f"test -e /sys/bus/pci/devices/{SLOT}")


def suspend(guest):
    guest.run(f"echo 1 > /sys/bus/pci/devices/{SLOT}/remove; sync")
