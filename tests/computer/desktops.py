"""The desktops that the computer may have: what each is made of, and the commands that clicks there stand for."""
import dataclasses

PERSON = "anna"

# The number in the name of a library differs between the releases of Debian.
COMMON = """linux-image-amd64 initramfs-tools zstd systemd-sysv udev kmod dbus-user-session libpam-systemd polkitd
    udisks2 adwaita-icon-theme fonts-dejavu-core at-spi2-core python3-gi xdg-utils libnotify-bin
    eject lvm2 mdadm cryptsetup-bin ?name(^libblockdev-crypto[0-9]$) dosfstools e2fsprogs fdisk psmisc procps
    util-linux""".split()


def call(name, path, method, *arguments, bus="session"):
    """Returns the command that calls a method of a D-Bus service."""
    return " ".join(("gdbus call", f"--{bus}", "--dest", name, "--object-path", path, "--method", method, *arguments))


@dataclasses.dataclass(frozen=True)
class Recipe:
    name: str
    packages: list
    file_manager: str
    agent: str  # the process that asks for the password; the kernel keeps 15 characters of a name
    stops_mounting: str  # switches the desktop's own volume monitor off
    logs_out: str
    locks_screen: str
    turns_dark: str  # empty where the program can't follow
    enlarges_text: str
    sleeps_after_a_minute: str  # empty where that can't be had
    is_kept_awake: str = call("org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit",
                              "org.freedesktop.PowerManagement.Inhibit.HasInhibit") + " | grep true"  # succeeds if so
    ejects: str = 'gio mount --eject "$mount"'  # what the file manager does with the volume at $mount
    lists_volumes: str = "gio mount --list --detail"  # those that the file manager shows, with their devices
    password_field: str = "password text"  # its role in the agent's dialog
    enlarges_at_once: bool = True  # without, larger text is seen in a window that is opened after it
    hooks: tuple = ()
    mounts_by_itself: bool = True
    tells_positions: bool = False  # of windows and their parts; without, the user works by keyboard and by actions
    tells_of_cancel: bool = True  # instead of a failed authentication
    asks_windows_to_close: bool = False  # before it ends the session, and waits for them
    asks_without_end: bool = False  # for the password, as often as it is wrong
    settles: str = "true"  # waits for the session's beginning to be over
    disk_size: str = "8G"
    memory: int = 4096  # in MiB
    video_memory: int = 64  # in MiB


XFCE = Recipe(
    "xfce",
    """xserver-xorg-core xserver-xorg-input-libinput lightdm lightdm-gtk-greeter mate-polkit xfce4-session
        xfce4-settings xfce4-notifyd light-locker xfwm4 xfdesktop4 xfce4-panel thunar thunar-volman gvfs
        gvfs-daemons libglib2.0-bin xfce4-power-manager""".split(),
    file_manager="thunar",
    agent="polkit-mate-aut",
    stops_mounting="xfconf-query -c thunar-volman -p /automount-media/enabled -s false; "
                   "xfconf-query -c thunar-volman -p /automount-drives/enabled -s false",
    logs_out="xfce4-session-logout --logout",
    locks_screen="light-locker-command --lock",
    turns_dark="",  # Qt 6.4 takes over no colors of the themes
    enlarges_text="xfconf-query -c xsettings -p /Gtk/FontName -s 'Sans 15' --create -t string",
    sleeps_after_a_minute="",  # its power manager did not heed so short a time
    # This agent runs only on its own desktop otherwise.
    hooks=('sed -i /OnlyShowIn/d "$1"/etc/xdg/autostart/polkit-mate-authentication-agent-1.desktop',),
    enlarges_at_once=False, tells_positions=True, disk_size="6G", memory=3072, video_memory=16)

WAYLAND = "xwayland libgl1-mesa-dri".split()


def overview(method, *value):
    return call("org.gnome.Shell", "/org/gnome/Shell", f"org.freedesktop.DBus.Properties.{method}", "org.gnome.Shell",
                "OverviewActive", *value)


GNOME = Recipe(
    "gnome",
    WAYLAND + """gnome-shell gnome-session gdm3 gnome-settings-daemon mutter gvfs gvfs-daemons gvfs-backends nautilus
        dconf-cli libglib2.0-bin fonts-cantarell""".split(),
    file_manager="nautilus",
    agent="gnome-shell",
    stops_mounting="gsettings set org.gnome.desktop.media-handling automount false",
    logs_out="gnome-session-quit --logout --no-prompt",
    locks_screen="loginctl lock-session",
    turns_dark="gsettings set org.gnome.desktop.interface color-scheme prefer-dark",
    enlarges_text="gsettings set org.gnome.desktop.interface text-scaling-factor 1.5",
    sleeps_after_a_minute="for source in ac battery; do for each in timeout=60 type=suspend; do gsettings set "
                          "org.gnome.settings-daemon.plugins.power sleep-inactive-$source-${each%=*} ${each#*=}; "
                          "done; done",
    is_kept_awake=call("org.gnome.SessionManager", "/org/gnome/SessionManager",
                       "org.gnome.SessionManager.IsInhibited", "8") + " | grep true",
    hooks=('chroot "$1" dconf update',),
    asks_without_end=True,
    # It starts in its overview, which takes the keyboard.
    settles=f"until {overview('Get')} | grep true; do sleep 1; done; sleep 5; " +
            overview("Set", "'<false>'") + "; sleep 5")

UDISKS = "org.freedesktop.UDisks2"

PLASMA = Recipe(
    "plasma",
    WAYLAND + """plasma-desktop plasma-workspace kwin-wayland sddm polkit-kde-agent-1 powerdevil dolphin
        libkf6solid-bin libglib2.0-bin fonts-noto-core""".split(),
    file_manager="dolphin",
    agent="polkit-kde-auth",
    password_field="text",
    stops_mounting="true",
    mounts_by_itself=False,
    tells_of_cancel=False,
    asks_windows_to_close=True,
    logs_out=call("org.kde.Shutdown", "/Shutdown", "org.kde.Shutdown.logout"),
    locks_screen="loginctl lock-session",
    turns_dark="plasma-apply-colorscheme BreezeDark",
    enlarges_text="kwriteconfig6 --file kdeglobals --group General --key font 'Noto Sans,15,-1,5,50,0,0,0,0,0' && "
                  "gdbus emit --session --object-path /KDEPlatformTheme --signal org.kde.KDEPlatformTheme.refreshFonts",
    sleeps_after_a_minute="for each in AutoSuspendAction=1 AutoSuspendIdleTimeoutSec=60; do kwriteconfig6 --file "
                          "powerdevilrc --group AC --group SuspendAndShutdown --key ${each%=*} ${each#*=}; done; "
                          "systemctl --user restart plasma-powerdevil.service",
    lists_volumes="solid-hardware6 query 'IS StorageVolume' || true",
    ejects='device=$(findmnt --noheadings --output SOURCE "$mount") && udisksctl unmount -b "$device" && drive=$(' +
           call(UDISKS, "/org/freedesktop/UDisks2/block_devices/${device##*/}", "org.freedesktop.DBus.Properties.Get",
                "org.freedesktop.UDisks2.Block", "Drive", bus="system") + """ | cut -d "'" -f 2) && """ +
           call(UDISKS, '"$drive"', "org.freedesktop.UDisks2.Drive.Eject", '"{}"', bus="system"))

RECIPES = {recipe.name: recipe for recipe in (XFCE, GNOME, PLASMA)}
