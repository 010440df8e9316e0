"""The machine: an emulator that is controlled through sockets, with card readers, keyboard and mouse."""
import json
import os
import pathlib
import select
import socket
import subprocess
import time

SCREEN = "1400x1050"  # in pixels
SLOT = "0000:00:10.0"  # the PCI address of the native slot's controller in the guest

KEYS = {" ": "spc", "/": "slash", ".": "dot", "-": "minus", "\n": "ret", ",": "comma"}


class MachineError(Exception):
    pass


class Line:
    """A socket that carries one JSON document per line."""

    def __init__(self, path):
        self.socket = self.connected(str(path))
        self.pending = b""

    @staticmethod
    def connected(path):
        """Connects, even if the path appears a moment before its listener."""
        for _ in range(100):
            connection = socket.socket(socket.AF_UNIX)
            try:
                connection.connect(path)
                return connection
            except ConnectionRefusedError:
                connection.close()
                time.sleep(0.05)
        raise MachineError(f"nobody listens at {path}")

    def send(self, document):
        self.socket.sendall(json.dumps(document).encode() + b"\n")

    def receive(self, timeout):
        """Returns the next document; None if the time runs out."""
        end = time.monotonic() + timeout
        while b"\n" not in self.pending:
            if not select.select([self.socket], [], [], max(0.0, end - time.monotonic()))[0]:
                return None
            received = self.socket.recv(1 << 20)
            if not received:
                raise MachineError("the machine has ended")
            self.pending += received
        line, self.pending = self.pending.split(b"\n", 1)
        return json.loads(line)


class Machine:
    """Runs from construction until `stop`. Its disk is a layer above the given one."""

    def __init__(self, desktop, accelerator, screen, folder, disk, archive, state=None):
        self.folder, self.recipe = pathlib.Path(folder), desktop.recipe
        self.width, self.height = screen
        for old in self.folder.glob("*.socket"):
            old.unlink()
        arguments = [
            "qemu-system-x86_64", "-nodefaults", "-no-user-config", "-display", "none",
            # Desktops let no computer sleep by itself that they take for an emulated one.
            "-smbios", "type=1,manufacturer=Tessel,product=Computer,version=1",
            "-machine", "q35", "-accel", accelerator, "-cpu", "Nehalem,hypervisor=off",
            "-m", str(desktop.recipe.memory), "-smp", "2",
            "-kernel", str(desktop.kernel), "-initrd", str(desktop.initrd),
            "-append", "root=/dev/vda rw console=ttyS0 quiet print-fatal-signals=1",
            "-chardev", f"file,id=console,path={self.folder}/console", "-serial", "chardev:console",
            "-drive", f"if=virtio,file={disk},format=qcow2,cache=unsafe",
            "-drive", f"if=virtio,file={archive},format=raw,read-only=on",
            "-device", f"VGA,xres={self.width},yres={self.height},edid=on,vgamem_mb={desktop.recipe.video_memory}",
            "-device", "qemu-xhci,id=xhci", "-device", "usb-tablet", "-device", "usb-kbd",
            "-device", "sdhci-pci,id=sdhci,addr=0x10",
            "-drive", "if=none,id=card", "-device", "sd-card,id=slot,drive=card",
            "-device", "virtio-serial",
            *self.port("system"), *self.port("session"),
            "-qmp", f"unix:{self.folder}/control.socket,server=on,wait=off"]
        if state:
            arguments += ["-incoming", f"exec:cat {state}"]
        with open(self.folder / "emulator.log", "w") as log:
            self.process = subprocess.Popen(arguments, stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        try:
            self.control = Line(self.existing("control.socket"))
            self.control.receive(10)
            self.command("qmp_capabilities")
        except BaseException:
            self.stop()
            raise

    def port(self, name):
        return ["-chardev", f"socket,id={name},path={self.folder}/{name}.socket,server=on,wait=off",
                "-device", f"virtserialport,chardev={name},name={name}"]

    def existing(self, name):
        path = self.folder / name
        for _ in range(200):
            if path.exists():
                return path
            if self.process.poll() is not None:
                break
            time.sleep(0.05)
        raise MachineError("the emulator did not start: " + (self.folder / "emulator.log").read_text())

    def command(self, name, timeout=120, **arguments):
        self.control.send({"execute": name, "arguments": {key.replace("_", "-"): value
                                                          for key, value in arguments.items()}})
        while True:
            reply = self.control.receive(timeout)
            if reply is None:
                raise MachineError(f"the machine does not answer to {name}")
            if "error" in reply:
                raise MachineError(f"{name}: {reply['error']['desc']}")
            if "return" in reply:
                return reply["return"]

    def stop(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    def wait_for_status(self, question, wanted, timeout):
        end = time.monotonic() + timeout
        while time.monotonic() < end:
            status = self.command(question).get("status")
            if status == wanted:
                return
            if status == "failed":
                break
            time.sleep(0.2)
        raise MachineError(f"{question} does not become {wanted}")

    def save(self, state):
        """Stops the machine and saves its state in a file, which belongs to the current content of the disk."""
        self.command("stop")
        self.command("migrate-set-parameters", max_bandwidth=1 << 40)
        self.command("migrate", uri=f"exec:cat > {state}")
        self.wait_for_status("query-migrate", "completed", 300)
        self.command("quit")
        self.process.wait(60)

    def resume(self):
        """Continues from the saved state that the machine was started with."""
        self.wait_for_status("query-migrate", "completed", 120)
        if self.command("query-status")["status"] != "running":
            self.command("cont")

    def screenshot(self, path):
        self.command("screendump", filename=str(path), format="png")
        return path

    # Cards and readers

    def change_medium(self, slot, path):
        self.command("blockdev-change-medium", id=slot, filename=str(path), format="raw", force=True)

    def remove_medium(self, slot):
        self.command("eject", id=slot, force=True)

    def has_medium(self, slot):
        """Returns whether the slot holds a card that has not been ejected."""
        [found] = [each for each in self.command("query-block") if each.get("qdev", "").endswith(slot)]
        return "inserted" in found and not found.get("tray_open")

    def plug_reader(self, name, cards, vendor, product, serial=None):
        """Connects a USB reader whose slots, one for each node of a card, are called NAME-0, NAME-1 and so on."""
        number = {"serial": serial} if serial else {}
        self.command("device_add", driver="usb-bot", id=name, bus="xhci.0", attached=False, **number)
        for index, node in enumerate(cards):
            self.command("device_add", driver="scsi-hd", id=f"{name}-{index}", bus=f"{name}.0", scsi_id=0, lun=index,
                         drive=node, vendor=vendor, product=product, removable=True, werror="report",
                         rerror="report", **number)
        self.command("qom-set", path=f"/machine/peripheral/{name}", property="attached", value=True)

    def add_medium(self, name, path, slow_to=None, fails=None, loses_writes=False, is_locked=False):
        """Adds a card's file to the machine, perhaps with a limit in bytes per second, with an access ("read",
        "write" or "flush") that fails at a sector or, if that is None, anywhere, without any memory, or with its lock
        switch set."""
        file = {"driver": "file", "filename": str(path), "cache": {"direct": False, "no-flush": True}}
        if loses_writes:
            file = {"driver": "null-co", "size": path.stat().st_size, "read-zeroes": True}
        if fails:
            access, sector = fails
            where = {} if sector is None else {"sector": sector}
            file = {"driver": "blkdebug", "image": file, "inject-error": [
                {"event": "none", "iotype": access, "errno": 5, **where}]}
        raw = {"driver": "raw", "node-name": name if not slow_to else name + "-whole", "file": file,
               "read-only": is_locked}
        self.command("blockdev-add", **raw)
        if slow_to:
            self.command("object-add", qom_type="throttle-group", id=name + "-limit",
                         limits={"bps-total": slow_to, "bps-total-max": slow_to})
            self.command("blockdev-add", driver="throttle", node_name=name, throttle_group=name + "-limit",
                         file=name + "-whole")

    # Keyboard and mouse

    def events(self, *events):
        self.command("input-send-event", events=list(events))

    def key(self, name, down):
        return {"type": "key", "data": {"down": down, "key": {"type": "qcode", "data": name}}}

    def press(self, *names):
        """Presses the keys together, in this order."""
        self.events(*[self.key(name, True) for name in names])
        time.sleep(0.05)
        self.events(*[self.key(name, False) for name in reversed(names)])
        time.sleep(0.05)

    def type(self, text):
        for letter in text:
            shifted = letter.isupper() or letter in "_"
            name = {"_": "minus"}.get(letter) or KEYS.get(letter) or letter.lower()
            self.press(*(["shift"] if shifted else []), name)

    def point(self, x, y):
        self.events(*[{"type": "abs", "data": {"axis": axis, "value": round(at * 32767 / (size - 1))}}
                      for axis, at, size in (("x", x, self.width), ("y", y, self.height))])

    def click(self, x, y):
        self.point(x, y)
        time.sleep(0.2)
        for down in (True, False):
            self.events({"type": "btn", "data": {"down": down, "button": "left"}})
            time.sleep(0.1)

    def wheel(self, x, y, down):
        self.point(x, y)
        for pressed in (True, False):
            self.events({"type": "btn", "data": {"down": pressed, "button": "wheel-down" if down else "wheel-up"}})
        time.sleep(0.2)


def make_layer(path, below, format_below):
    pathlib.Path(path).unlink(missing_ok=True)
    subprocess.run(["qemu-img", "create", "-q", "-f", "qcow2", "-b", str(below), "-F", format_below, str(path)],
                   check=True)
    return path


def runs_accelerated(desktop, folder):
    """Returns whether the host's processor can run a kernel itself; a /dev/kvm alone is no proof."""
    if not os.access("/dev/kvm", os.R_OK | os.W_OK):
        return False
    console = pathlib.Path(folder) / "trial"
    console.unlink(missing_ok=True)
    process = subprocess.Popen(
        ["qemu-system-x86_64", "-nodefaults", "-display", "none", "-machine", "q35", "-accel", "kvm",
         "-cpu", "Nehalem", "-m", "512", "-kernel", str(desktop.kernel), "-append", "console=ttyS0 panic=-1",
         "-no-reboot", "-serial", f"file:{console}"], stderr=subprocess.DEVNULL)
    try:
        for _ in range(80):
            time.sleep(0.1)
            if console.exists() and b"Linux version" in console.read_bytes():
                return True
            if process.poll() is not None:
                break
        return False
    finally:
        process.kill()
        process.wait()
