"""Gives commands to the computer from outside, through two ports of its machine."""
import re
import shlex

from machine import Line
from waiting import wait_until

PROGRAM = "velmora-tessel"


class GuestError(Exception):
    pass


class Shown:
    """One object on the screen, as a screen reader sees it."""

    def __init__(self, path, role, name, text, states, place):
        self.path, self.role, self.name, self.text, self.states, self.place = path, role, name, text, states, place

    def is_active(self):
        return bool(self.states >> 1 & 1)

    def is_enabled(self):
        return bool(self.states >> 8 & 1)

    def is_checked(self):
        return bool(self.states >> 4 & 1)

    def center(self):
        x, y, width, height = self.place
        return x + width // 2, y + height // 2


class Guest:
    def __init__(self, machine):
        self.system = Line(machine.existing("system.socket"))
        self.session = Line(machine.existing("session.socket"))

    def ask(self, port, patience, **question):
        port.send(question)
        reply = port.receive(patience)
        if reply is None:
            raise GuestError(f"the computer does not answer within {patience} s: {question}")
        if "error" in reply:
            raise GuestError(reply["error"])
        return reply

    def wait_for_desktop(self, timeout=300):
        """Waits for the first answer of the session."""
        self.ask(self.session, timeout, do="run", command="true")

    def attempt(self, command, timeout=60):
        """Runs a command as the administrator, and returns its status and output."""
        reply = self.ask(self.system, timeout + 30, do="run", command=command, timeout=timeout)
        return reply["status"], reply["output"]

    def run(self, command, timeout=60):
        status, output = self.attempt(command, timeout)
        if status:
            raise GuestError(f"“{command}” ended with {status}: {output.strip()}")
        return output.strip()

    def run_as_person(self, command, timeout=60):
        reply = self.ask(self.session, timeout + 30, do="run", command=command, timeout=timeout)
        if reply["status"]:
            raise GuestError(f"“{command}” ended with {reply['status']}: {reply['output'].strip()}")
        return reply["output"].strip()

    def start_as_person(self, command):
        self.ask(self.session, 60, do="start", command=command)

    def look(self, program=PROGRAM):
        """Returns everything that the program shows; None if it does not run."""
        shown = self.ask(self.session, 90, do="look", program=program)["shown"]
        return None if shown is None else [Shown(**each) for each in shown]

    def place_of(self, item, program=PROGRAM):
        return self.ask(self.session, 90, do="place", program=program, path=item.path)["place"]

    def act_on(self, item, program=PROGRAM):
        """Does what a click on the item would do."""
        self.ask(self.session, 90, do="act", program=program, path=item.path)

    def typed_into(self, program):
        """Returns the content of the program's fields that have the focus; a password's as dots."""
        return self.ask(self.session, 90, do="typed", program=program)["texts"]

    def uses_of(self, disk):
        """Returns the uses of all parts of the disk, which may be gone, as sentences."""
        script = f"""
            grep -hs " /dev/{disk}" /proc/[0-9]*/mountinfo | cut -d ' ' -f 5 | sort -u | sed 's/^/{disk} is mounted: /'
            find /proc/[0-9]*/fd -lname "/dev/{disk}* (deleted)" 2>/dev/null | while read open; do
                echo "{disk} is gone but is open in $(cat ${{open%/fd/*}}/comm)"; done
            [ -e /sys/class/block/{disk} ] || exit 0
            cd /sys/class/block; for part in {disk} $(ls {disk}); do
                [ -e $part/dev ] || [ -e {disk}/$part/dev ] || continue
                number=$(cat $part/dev)
                grep -qs " $number " /proc/[0-9]*/mountinfo && echo "$part is mounted: $(grep -hs " $number " \
                    /proc/[0-9]*/mountinfo | cut -d ' ' -f 5 | sort -u | tr '\\n' ' ')"
                for holder in $part/holders/*; do [ -e $holder ] && echo "$part is held by ${{holder##*/}}"; done
                grep -qs "^/dev/$part " /proc/swaps && echo "$part is swap space"
                losetup -l -n -O NAME,BACK-FILE | grep -s "/dev/$part$" && echo "$part is behind a loop device"
                for open in $(find /proc/[0-9]*/fd -lname "/dev/$part" 2>/dev/null); do
                    echo "$part is open in $(cat ${{open%/fd/*}}/comm)"; done
            done; true"""
        return [line for line in self.run(script).splitlines() if line]

    def await_success(self, command, timeout=30):
        """Waits until a command of the administrator succeeds."""
        wait_until(lambda: self.attempt(command)[0] == 0, f"“{command}” does not succeed", timeout)


def matching(shown, role, name):
    """Returns the first object shown whose role and beginning of the name match these regular expressions."""
    return next((each for each in shown or [] if re.fullmatch(role, each.role) and re.match(name, each.name)), None)
