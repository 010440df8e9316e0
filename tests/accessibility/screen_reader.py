"""Reads a running program over the accessibility bus, as a screen reader does."""
import re
import time

from gi.repository import Gio, GLib

CHECKED, EDITABLE, FOCUSABLE, FOCUSED, SELECTED, SHOWING = 4, 7, 11, 12, 23, 25  # the numbers of states on the bus
ACCESSIBLE, ACTION, TEXT, VALUE = (f"org.a11y.atspi.{each}" for each in ("Accessible", "Action", "Text", "Value"))
ROOT = "/org/a11y/atspi/accessible/root"
PATIENCE = 30  # in seconds


def reading(interface, name):
    return "org.freedesktop.DBus.Properties", "Get", GLib.Variant("(ss)", (interface, name))


class Node:
    """One accessible object, as it was when it was read."""

    def __init__(self, path, answers):
        self.path = path
        states, self.role, self.name, children = answers
        if None in (states, self.role, self.name):  # it disappeared while it was being read
            states, self.role, self.name = (0, 0), "", ""
        self.states = states[0] | states[1] << 32
        self.child_paths = [child for _, child in children or []]
        self.actions = []

    def has(self, state):
        return bool(self.states >> state & 1)


class ScreenReader:
    def __init__(self, process):
        """Waits until the process, whose accessibility must be on, is on the bus."""
        self.process = process
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, 0, -1)
        flags = Gio.DBusConnectionFlags
        self.bus = Gio.DBusConnection.new_for_address_sync(
            address.unpack()[0], flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION)
        self.announced = []  # every state change and announcement, as (path, state, value)
        for signal, event in (("StateChanged", "object:state-changed"), ("Announcement", "object:announcement")):
            self.bus.signal_subscribe(None, "org.a11y.atspi.Event.Object", signal, None, None, 0, self.note_event)
            self.bus.call_sync("org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry",
                               "RegisterEvent", GLib.Variant("(s)", (event,)), None, 0, -1)
        self.name = None
        self.until("the program is on the bus", self.find_program)

    def note_event(self, _bus, _sender, path, _interface, signal, arguments):
        state, value = arguments.unpack()[:2]
        self.announced.append((path, signal if signal == "Announcement" else state, value))

    def find_program(self):
        # A toolkit that the desktop's theme brings along is on the bus, too, but has no window there.
        connections = self.connections()
        self.name = connections[-1] if connections else None
        return self.name

    def connections(self):
        """Returns the names on the bus of all toolkits in the process that have windows."""
        daemon = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
        names = self.ask([(*daemon, "ListNames")])[0][0]
        pids = self.ask([(*daemon, "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,))) for name in names])
        own = [name for name, pid in zip(names, pids) if pid and pid[0] == self.process.pid]
        children = self.ask([(name, ROOT, ACCESSIBLE, "GetChildren") for name in own])
        return [name for name, found in zip(own, children) if found and found[0]]

    def ask(self, questions):
        """Returns the answers to all questions, which are sent at once; None for those that fail."""
        answers = {}

        def take(bus, result, index):
            try:
                answers[index] = bus.call_finish(result).unpack()
            except GLib.Error:
                answers[index] = None

        for index, (receiver, path, interface, method, *arguments) in enumerate(questions):
            self.bus.call(receiver, path, interface, method, *arguments or [None], None, 0, -1, None, take, index)
        while len(answers) < len(questions):
            GLib.MainContext.default().iteration(True)
        return [answers[index] for index in range(len(questions))]

    def shown(self, root=ROOT):
        """Returns everything that is shown below the root, in reading order."""
        nodes, level = {}, [root]
        while level:
            found = self.look_at(level)
            nodes.update((node.path, node) for node in found)
            level = [path for node in found if node.has(SHOWING) or node.path == ROOT for path in node.child_paths]
        return list(self.in_order(nodes, root))

    def look_at(self, paths):
        questions = [(ACCESSIBLE, "GetState"), (ACCESSIBLE, "GetRoleName"), reading(ACCESSIBLE, "Name"),
                     (ACCESSIBLE, "GetChildren")]
        answers = self.ask_of(paths, questions)
        return [Node(path, answers[index * len(questions):][:len(questions)]) for index, path in enumerate(paths)]

    def ask_of(self, paths, questions):
        """Returns the first part of each answer, in the order of the paths."""
        return [answer and answer[0] for answer in self.ask([(self.name, path, *question)
                                                             for path in paths for question in questions])]

    def operable(self, root=ROOT):
        """Returns everything shown below the root that offers actions, and fills them in."""
        nodes = self.shown(root)
        for node, actions in zip(nodes, self.ask_of([node.path for node in nodes], [(ACTION, "GetActions")])):
            node.actions = [name for name, _, _ in actions or []]
        return [node for node in nodes if node.actions]

    def in_order(self, nodes, path):
        node = nodes.get(path)
        if node and path != ROOT and node.has(SHOWING):
            yield node
        for child in node.child_paths if node else []:
            yield from self.in_order(nodes, child)

    def all_with(self, role, name=".*"):
        return [node for node in self.shown() if re.fullmatch(role, node.role) and re.fullmatch(name, node.name)]

    def the(self, role, name=".*"):
        return next(iter(self.all_with(role, name)), None)

    def text(self, name):
        node = self.the("text", name)
        return self.ask_of([node.path], [(TEXT, "GetText", GLib.Variant("(ii)", (0, -1)))])[0] if node else ""

    def value(self, node):
        return self.ask_of([node.path], [reading(VALUE, "CurrentValue")])[0]

    def says(self, text):
        return any(text in node.name for node in self.shown())

    def now(self, node):
        return self.look_at([node.path])[0]

    def do(self, node, action):
        self.ask_of([node.path], [(ACTION, "DoAction", GLib.Variant("(i)", (node.actions.index(action),)))])

    def until(self, expectation, holds):
        deadline = time.monotonic() + PATIENCE
        while not holds():
            if self.process.poll() is not None or time.monotonic() > deadline:
                raise SystemExit(f"Waited in vain until {expectation}.")
            self.listen()

    @staticmethod
    def listen():
        while GLib.MainContext.default().iteration(False):
            pass
        time.sleep(0.02)
