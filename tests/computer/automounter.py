"""Mounts disks that are plugged in, after a delay in seconds, in place of the desktop's own volume monitor.
Prints "listening" once it does, and each attempt.
    automounter.py SECONDS"""
import sys

from gi.repository import Gio, GLib

UDISKS = "org.freedesktop.UDisks2"
BLOCK, FILE_SYSTEM = f"{UDISKS}.Block", f"{UDISKS}.Filesystem"
DELAY = float(sys.argv[1])

bus = Gio.bus_get_sync(Gio.BusType.SYSTEM)
mounted = {}  # the identity of the last file system mounted, by object


def property_of(path, interface, name):
    try:
        return bus.call_sync(UDISKS, path, "org.freedesktop.DBus.Properties", "Get",
                             GLib.Variant("(ss)", (interface, name)), None, 0, -1).unpack()[0]
    except GLib.Error:
        return None


def mount(path):
    print(path, flush=True)
    arguments = GLib.Variant("(a{sv})", ({},))
    bus.call(UDISKS, path, FILE_SYSTEM, "Mount", arguments, None, 0, -1, None, lambda *_: None)
    return GLib.SOURCE_REMOVE


def consider(path):
    """Mounts a file system that is new, or that has taken the place of another one."""
    if property_of(path, BLOCK, "IdUsage") != "filesystem":
        mounted.pop(path, None)
        return
    identity = property_of(path, BLOCK, "IdUUID")
    is_wanted = property_of(path, BLOCK, "HintAuto") and property_of(path, FILE_SYSTEM, "MountPoints") == []
    if is_wanted and mounted.get(path) != identity:
        mounted[path] = identity
        GLib.timeout_add(int(DELAY * 1000), mount, path)


def on_signal(_bus, _sender, path, _interface, signal, arguments):
    content = arguments.unpack()
    if signal == "InterfacesRemoved":
        mounted.pop(content[0], None)
    elif signal == "InterfacesAdded":
        consider(content[0])
    elif content[0] == BLOCK and {"IdUUID", "IdUsage"} & set(content[1]):
        consider(path)


for interface, signal in (("org.freedesktop.DBus.ObjectManager", None),
                          ("org.freedesktop.DBus.Properties", "PropertiesChanged")):
    bus.signal_subscribe(UDISKS, interface, signal, None, None, 0, on_signal)
print("listening", flush=True)
GLib.MainLoop().run()
