"""A Wayland desktop that nobody sees, with a session bus of its own, and a user who has only a keyboard."""
import contextlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

SCREEN = (1366, 768)
TITLE = "Velmora Tessel"
PICTURES = pathlib.Path("pictures")

# Windows float as on most desktops, and nothing asks for an X server.
CONFIGURATION = """xwayland disable
output HEADLESS-1 resolution {}x{}
for_window [app_id=".*"] floating enable
""".format(*SCREEN)


def expect(holds, otherwise):
    if not holds:
        sys.exit(otherwise)


def until(expectation, find, seconds=30):
    """Returns the first answer of the function that is neither empty nor false."""
    end = time.monotonic() + seconds
    while not (answer := find()):
        if time.monotonic() > end:
            sys.exit(f"Waited in vain for {seconds} seconds until {expectation}.")
        time.sleep(0.05)
    return answer


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=10).stdout


def press(*keys):
    """Presses the keys one after another; "ctrl+o" holds one of them down."""
    for key in keys:
        *held, last = key.split("+")
        run("wtype", *(word for name in held for word in ("-M", name)), "-k", last)


def windows():
    def below(node):
        return sum((below(child) for child in node["nodes"] + node["floating_nodes"]), [node])
    return [node for node in below(json.loads(run("swaymsg", "-t", "get_tree"))) if node.get("app_id")]


def window(title):
    """Returns the window with the title, to which dialogs add the program's."""
    return next((node for node in windows() if re.fullmatch(f"{title}( — {TITLE})?", node["name"] or "")), None)


def picture(name):
    time.sleep(0.5)  # a window draws a change a little later
    run("grim", PICTURES / f"wayland-{name}.png")


def is_plain(left, width):
    """Returns whether this part of the screen, in its whole height, has only one colour, as where no window is."""
    area = f"{left},0 {width}x{SCREEN[1]}"
    image = subprocess.run(["grim", "-t", "ppm", "-g", area, "-"], check=True, capture_output=True, timeout=10).stdout
    pixels = image[-3 * width * SCREEN[1]:]
    return pixels == pixels[:3] * (width * SCREEN[1])


def write_opener(folder):
    """Writes a program in the place of xdg-open that only keeps what it was asked to open, in the file "asked"."""
    opener = folder / "bin" / "xdg-open"
    opener.parent.mkdir()
    opener.write_text(f'#!/bin/sh\nprintf %s "$1" >"{folder}/asked"\n')
    opener.chmod(0o755)
    return opener.parent


@contextlib.contextmanager
def started(output, *command, **options):
    """Runs the command meanwhile, with its output in a file."""
    with open(output, "w") as file:
        process = subprocess.Popen(command, stdout=file, **options)
    try:
        yield process
    finally:
        process.terminate()
        process.wait(30)


@contextlib.contextmanager
def compositor(folder):
    """Runs the compositor in a folder of its own. As root it would not start, so it becomes "nobody"."""
    own = folder / "compositor"
    own.mkdir()
    (own / "configuration").write_text(CONFIGURATION)
    identity = {}
    if os.getuid() == 0:
        identity = {"user": "nobody", "group": "nogroup", "extra_groups": []}
        folder.chmod(0o711)
        shutil.chown(own, "nobody", "nogroup")
    environment = {"PATH": os.environ["PATH"], "HOME": own, "XDG_RUNTIME_DIR": own, "SWAYSOCK": own / "sway",
                   "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1"}
    log = folder / "compositor.log"
    with started(log, "sway", "--config", own / "configuration", env=environment, stderr=subprocess.STDOUT,
                 **identity) as process:
        until("the compositor starts", lambda: process.poll() is not None or
              ((own / "wayland-1").exists() and (own / "sway").exists()))
        expect(process.poll() is None, "The compositor does not start: " + log.read_text())
        # Without a keyboard that stays, every key would come together with the keyboard focus.
        with started(folder / "keyboard.log", "wtype", "-s", "3600000"):
            yield


def on_own_bus(*command):
    """Runs the command, followed by a folder that is removed afterwards, with nothing of the caller's desktop."""
    PICTURES.mkdir(exist_ok=True)
    with tempfile.TemporaryDirectory(prefix="velmora-tessel-") as folder:
        path = write_opener(pathlib.Path(folder))
        home = pathlib.Path(folder, "home")
        home.mkdir(mode=0o700)
        environment = {"PATH": f"{path}:{os.environ['PATH']}", "LANG": "C.UTF-8", "HOME": str(home), "TMPDIR": folder,
                       "XDG_RUNTIME_DIR": str(home), "QT_QPA_PLATFORM": "wayland",
                       "WAYLAND_DISPLAY": f"{folder}/compositor/wayland-1", "SWAYSOCK": f"{folder}/compositor/sway"}
        return subprocess.run(["dbus-run-session", "--", *command, folder], env=environment).returncode
