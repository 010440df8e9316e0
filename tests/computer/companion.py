"""Runs on the computer under test and answers the tests' questions, one JSON line each, through a port of its machine:
"system" as the administrator, "session" as the person at the desktop, with what is on the screen."""
import json
import os
import signal
import subprocess
import sys
import time

readers = {}  # by the process that they read


class Running:
    """What a screen reader must know of a process that it did not start."""

    def __init__(self, pid):
        self.pid = pid

    def poll(self):
        return None if os.path.exists(f"/proc/{self.pid}") else 0


def process_of(program):
    found = subprocess.run(["pgrep", "--newest", "--exact", program], capture_output=True, text=True).stdout.split()
    return int(found[0]) if found else None


def run(command, timeout=120):
    """Runs a shell's command to its end."""
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
    """Starts a shell's command that goes on by itself."""
    subprocess.Popen(["sh", "-c", "exec " + command], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                     stderr=subprocess.DEVNULL, start_new_session=True)
    return {}


def look(program):
    """Everything that the program shows, in reading order; nothing if it does not run."""
    from screen_reader import ScreenReader, TEXT
    from gi.repository import GLib

    pid = process_of(program)
    if not pid:
        return {"shown": None}
    if pid not in readers:
        readers[pid] = ScreenReader(Running(pid))
    reader = readers[pid]
    reader.listen()
    nodes = reader.shown()
    texts = dict(zip((node.path for node in nodes if node.role == "text"), reader.ask_of(
        [node.path for node in nodes if node.role == "text"], [(TEXT, "GetText", GLib.Variant("(ii)", (0, -1)))])))
    places = reader.ask_of([node.path for node in nodes],
                           [("org.a11y.atspi.Component", "GetExtents", GLib.Variant("(u)", (0,)))])
    return {"shown": [{"role": node.role, "name": node.name or "", "text": texts.get(node.path) or "",
                       "states": node.states, "place": place} for node, place in zip(nodes, places)]}


def answer(question):
    kinds = {"run": run, "start": start, "look": look}
    try:
        return kinds[question.pop("do")](**question)
    except (Exception, SystemExit) as error:  # whatever goes wrong is for the tests to judge
        return {"error": f"{type(error).__name__}: {error}"}


def main(name):
    with open(f"/dev/virtio-ports/{name}", "r+b", buffering=0) as port:
        pending = b""
        while True:
            received = port.read(65536)
            if not received:  # nobody has connected yet
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
