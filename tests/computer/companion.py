"""Runs on the computer under test and answers the tests' questions, one JSON line each, through a port of its machine:
"system" as the administrator, "session" as the user at the desktop, including the content of the screen."""
import json
import os
import signal
import subprocess
import sys
import time

CLICKABLE = ("frame", "push button", "radio button", "check box", "list item")
readers = {}  # by the identifier of the process that they read


class Running:
    """A process that the screen reader did not start."""

    def __init__(self, pid):
        self.pid = pid

    def poll(self):
        return None if os.path.exists(f"/proc/{self.pid}") else 0


def process_of(program):
    found = subprocess.run(["pgrep", "--newest", "--exact", program], capture_output=True, text=True).stdout.split()
    return int(found[0]) if found else None


def run(command, timeout=120):
    """Runs a shell command to its end, and returns its status and output."""
    process = subprocess.Popen(["sh", "-c", command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, text=True, errors="replace", start_new_session=True)
    try:
        output, _ = process.communicate(timeout=timeout)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        output, _ = process.communicate()
        return {"status": -1, "output": output}
    return {"status": process.returncode, "output": output}


def start(command):
    """Starts a shell command without waiting for it."""
    subprocess.Popen(["sh", "-c", "exec " + command], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                     stderr=subprocess.DEVNULL, start_new_session=True)
    return {}


def reader_of(program):
    """Returns a screen reader for the newest process of the program; None if there is none, or if it has no window for
    half a minute."""
    from screen_reader import ScreenReader

    pid = process_of(program)
    if pid and pid not in readers:
        try:
            readers[pid] = ScreenReader(Running(pid))
        except SystemExit:
            return None
    return readers.get(pid)


def places_of(reader, paths):
    from gi.repository import GLib

    return reader.ask_of(paths, [("org.a11y.atspi.Component", "GetExtents", GLib.Variant("(u)", (0,)))])


def look(program):
    """Returns everything that the program shows, in reading order, and where it can be clicked."""
    from screen_reader import TEXT
    from gi.repository import GLib

    reader = reader_of(program)
    if not reader:
        return {"shown": None}
    reader.listen()
    nodes = reader.shown()
    texts = [node.path for node in nodes if node.role == "text"]
    clickable = [node.path for node in nodes if node.role in CLICKABLE]
    texts = dict(zip(texts, reader.ask_of(texts, [(TEXT, "GetText", GLib.Variant("(ii)", (0, -1)))])))
    places = dict(zip(clickable, places_of(reader, clickable)))
    return {"shown": [{"path": node.path, "role": node.role, "name": node.name or "", "text": texts.get(node.path) or "",
                       "states": node.states, "place": places.get(node.path)} for node in nodes]}


def place(program, path):
    """Returns the place of something that was shown a moment ago."""
    return {"place": places_of(reader_of(program), [path])[0]}


def act(program, path):
    """Does what a click on something that was shown a moment ago would do."""
    from screen_reader import ACTION
    from gi.repository import GLib

    reader = reader_of(program)
    actions = [name for name, _, _ in reader.ask_of([path], [(ACTION, "GetActions")])[0]]
    clicking = next(index for index, name in enumerate(actions) if name.lower() != "setfocus")
    reader.ask_of([path], [(ACTION, "DoAction", GLib.Variant("(i)", (clicking,)))])
    return {}


def typed(program):
    """Returns the texts of the fields of the program that have the focus, whichever toolkit shows them."""
    from screen_reader import EDITABLE, FOCUSED, TEXT
    from gi.repository import GLib

    reader = reader_of(program)
    own, texts = reader.name, []
    try:
        for reader.name in reader.connections():
            fields = [node.path for node in reader.shown() if node.has(FOCUSED) and node.has(EDITABLE)]
            texts += reader.ask_of(fields, [(TEXT, "GetText", GLib.Variant("(ii)", (0, -1)))])
    finally:
        reader.name = own
    return {"texts": [text for text in texts if text is not None]}


def answer(question):
    kinds = {"run": run, "start": start, "look": look, "place": place, "act": act, "typed": typed}
    try:
        return kinds[question.pop("do")](**question)
    except (Exception, SystemExit) as error:  # the tests decide what a failure means
        return {"error": f"{type(error).__name__}: {error}"}


def main(name):
    with open(f"/dev/virtio-ports/{name}", "r+b", buffering=0) as port:
        pending = b""
        while True:
            received = port.read(65536)
            if not received:  # the port is not connected yet
                time.sleep(0.2)
                continue
            pending += received
            while b"\n" in pending:
                line, pending = pending.split(b"\n", 1)
                reply = json.dumps(answer(json.loads(line))).encode() + b"\n"
                while reply:
                    reply = reply[port.write(reply):]


if __name__ == "__main__":
    main(sys.argv[1])
