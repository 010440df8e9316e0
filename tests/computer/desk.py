"""What the user does on the desktop outside the program, and what the desktop then shows."""
import re
import time

from waiting import Unexpected, wait_until

NOTIFICATIONS = "/tmp/notifications"
MOUNT_ATTEMPTS = "/tmp/mount-attempts"


class Desk:
    """The desktop around the program, in the words of its recipe. A part of `Computer`."""

    # The file manager

    def open_file_manager(self):
        """Opens the file manager, which may take a while, and turns back to the program."""
        self.guest.start_as_person(self.recipe.file_manager)
        self.await_process(self.recipe.file_manager)
        time.sleep(30)
        self.turn_to_other_window(self.is_program_in_front)

    def turn_to_file_manager(self):
        self.await_program_in_front()
        self.turn_to_other_window(lambda: not self.is_program_in_front())

    def turn_to_other_window(self, is_there):
        def turns():
            self.machine.press("alt", "tab")
            time.sleep(5)
            return is_there()

        if not is_there():
            wait_until(turns, "the other window does not come to the front")

    def eject_in_file_manager(self, card, label):
        """Ejects the card as the file manager does on a click on its volume."""
        self.await_mount(label)
        self.guest.run_as_person(f"mount=/media/$USER/{label}; {self.recipe.ejects}")
        self.guest.await_success(f"test $(cat /sys/class/block/{card.device}/size) -eq 0")

    def expect_listed(self, card):
        """Expects the file manager to list a volume of the card."""
        if not self.lists(card):
            raise Unexpected(f"the file manager lists no volume of {card.device}")

    def lists(self, card):
        return re.search(rf"/{card.device}\d", self.guest.run_as_person(self.recipe.lists_volumes))

    def expect_left_alone(self, card, seconds=30):
        """Expects the desktop to mount nothing of the card for so long. The file manager also lists no volume of it,
        unless the card is in the slot: the kernel can't let go of it there."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self.expect_released(card)
            if card.slot != "slot" and self.lists(card):
                raise Unexpected(f"the file manager lists a volume of {card.device}")
            time.sleep(2)

    def desktop_mounts_after(self, seconds):
        """Makes the desktop mount after a delay in seconds, or never: a program of the tests takes the place of its
        own volume monitor."""
        self.guest.run_as_person(self.recipe.stops_mounting)
        self.guest.start_as_person(f"python3 -B /var/lib/companion/automounter.py {seconds} >{MOUNT_ATTEMPTS}")
        self.guest.await_success(f"grep --quiet listening {MOUNT_ATTEMPTS}")

    def desktop_starts_a_program_for_each_mount(self):
        """Delays the desktop's mounts by the time that this computer takes to start a program."""
        begun = time.monotonic()
        self.guest.run_as_person("python3 -c 'from gi.repository import Gio'")
        self.desktop_mounts_after(round(0.5 + time.monotonic() - begun, 1))

    def expect_mount_attempt(self):
        """Expects that the program of the tests has tried to mount something."""
        self.guest.await_success(f"grep --quiet ^/ {MOUNT_ATTEMPTS}")

    # Notifications

    def record_notifications(self):
        self.guest.start_as_person(
            "stdbuf -oL dbus-monitor --session interface=org.freedesktop.Notifications,member=Notify "
            f">{NOTIFICATIONS} 2>&1")
        time.sleep(2)

    def expect_notification(self, title):
        self.guest.await_success(f"grep --quiet 'string \"{title}\"' {NOTIFICATIONS}")

    # The session

    def is_program_in_front(self):
        return any(each.role == "frame" and each.is_active() for each in self.guest.look() or [])

    def await_program_in_front(self):
        wait_until(self.is_program_in_front, "the program is not in front")

    def lock_screen(self):
        self.await_program_in_front()
        self.guest.run_as_person(self.recipe.locks_screen)
        wait_until(lambda: not self.is_program_in_front(), "the screen is not locked")
        self.picture("locked")

    def unlock_screen(self):
        self.guest.run("loginctl unlock-sessions")
        time.sleep(5)

    def log_out(self):
        self.guest.start_as_person(self.recipe.logs_out)

    def desktop_sleeps_after_a_minute(self):
        """Returns whether that can be had."""
        if self.recipe.sleeps_after_a_minute:
            self.guest.run_as_person(self.recipe.sleeps_after_a_minute)
        return bool(self.recipe.sleeps_after_a_minute)

    def expect_awake(self):
        """Expects that the computer is awake, and that the desktop and the login service know that it should be."""
        if (status := self.machine.command("query-status")["status"]) != "running":
            raise Unexpected(f"the computer is {status}")
        self.guest.run_as_person(self.recipe.is_kept_awake)
        self.guest.run("systemd-inhibit --list | grep Velmora")

    def expect_nothing_to_keep_it_awake(self):
        self.guest.run_as_person(f"! {{ {self.recipe.is_kept_awake}; }}")
        self.guest.run("! { systemd-inhibit --list | grep Velmora; }")

    def expect_asleep(self, timeout):
        self.machine.wait_for_status("query-status", "suspended", timeout)

    # The look

    def picture(self, name):
        """Keeps a picture of the screen."""
        return self.machine.screenshot(self.folder / f"{name}.png")

    def brightness(self):
        """Returns the mean of the screen's colors, from 0 to 255."""
        path = self.folder / "screen.ppm"
        self.machine.command("screendump", filename=str(path), format="ppm")
        pixels = path.read_bytes().split(b"\n", 3)[3]
        return sum(pixels[::97]) / len(pixels[::97])

    def turn_dark(self):
        self.guest.run_as_person(self.recipe.turns_dark)
        time.sleep(5)
        self.picture("dark")

    def expect_darker_than(self, light):
        if (dark := self.brightness()) > light / 2:
            raise Unexpected(f"the screen's brightness was {light:.0f} and is {dark:.0f}")

    def enlarge_text(self):
        self.guest.run_as_person(self.recipe.enlarges_text)
        time.sleep(5)

    def height_of(self, role, name):
        return self.find(role, name)[0].place[3]

    @staticmethod
    def expect_heights(small, tall, after_restart):
        if not small < tall == after_restart:
            raise Unexpected(f"the height was {small}, then {tall}, and {after_restart} in a new window")
