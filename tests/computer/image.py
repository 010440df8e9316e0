"""Builds the disk of a desktop computer, its kernel, and images to be written."""
import hashlib
import os
import pathlib
import random
import subprocess
import tarfile

from desktops import COMMON, PERSON

HERE = pathlib.Path(__file__).resolve().parent
TREE = HERE.parent.parent
BUILD = TREE / "build" / "computer"

PASSWORD = "correct horse"

HOOKS = [
    f'chroot "$1" useradd --create-home --shell /bin/bash --groups sudo {PERSON}',
    f'echo "{PERSON}:{PASSWORD}" | chroot "$1" chpasswd',
    'chroot "$1" systemctl enable companion.service',
    # Timers would change how long a scenario takes.
    'chroot "$1" systemctl mask apt-daily.timer apt-daily-upgrade.timer e2scrub_all.timer fstrim.timer '
    'man-db.timer systemd-timesyncd.service',
]


def run(*command, **options):
    return subprocess.run([str(each) for each in command], check=True, **options)


def digest(*parts):
    total = hashlib.sha256()
    for part in parts:
        total.update(part if isinstance(part, bytes) else str(part).encode())
        total.update(b"\0")
    return total.hexdigest()


def fixed_files(desktop):
    """Returns the desktop's files that belong to no package, by their paths on the computer."""
    folders = [HERE / "desktops" / name for name in ("common", desktop)]
    return {str(path.relative_to(folder)): path
            for folder in folders for path in sorted(folder.rglob("*")) if path.is_file()}


def pack(archive, files):
    """Packs files, given by their names in the archive, with the administrator as their owner."""
    def as_roots(entry):
        entry.uid = entry.gid = entry.mtime = 0
        entry.uname = entry.gname = "root"
        entry.mode = 0o644
        return entry
    with tarfile.open(archive, "w") as packed:
        for name, path in files.items():
            packed.add(path, name, filter=as_roots)


def newest_package():
    return max((TREE / "build").glob("velmora-tessel_*.deb"), key=lambda path: path.stat().st_mtime)


def packages_needed_by(package):
    """Returns the dependencies of the program's package, so that it can be installed later without a network."""
    depends = run("dpkg-deb", "--field", package, "Depends", capture_output=True, text=True).stdout
    return sorted(each.split("|")[0].split("(")[0].strip() for each in depends.split(","))


def content_of(package):
    """Returns a digest of the files that the package installs, which does not depend on the time of the build."""
    with subprocess.Popen(["dpkg-deb", "--fsys-tarfile", str(package)], stdout=subprocess.PIPE) as process:
        with tarfile.open(fileobj=process.stdout, mode="r|") as files:
            return digest(*[part for entry in files for part in
                            (entry.name, entry.mode, entry.linkname, files.extractfile(entry).read() if entry.isfile() else "")])


def suite():
    release = dict(line.strip().split("=", 1) for line in open("/etc/os-release") if "=" in line)
    return release["VERSION_CODENAME"]


class Desktop:
    """A Debian root with a desktop on a raw disk, the kernel and the initial RAM disk that start it."""

    def __init__(self, recipe, package):
        self.recipe = recipe
        self.packages = sorted(set(COMMON + recipe.packages + packages_needed_by(package)))
        self.hooks = [*HOOKS, *recipe.hooks]
        self.folder = BUILD / recipe.name / "desktop"
        self.disk, self.kernel, self.initrd = (self.folder / name for name in ("root.raw", "vmlinuz", "initrd.img"))
        self.files = fixed_files(recipe.name)
        content = [part for name, path in self.files.items() for part in (name, path.read_bytes())]
        self.key = digest(suite(), self.packages, self.hooks, recipe.disk_size, *content)

    def is_built(self):
        stamp = self.folder / "key"
        return stamp.exists() and stamp.read_text() == self.key

    def build(self):
        self.folder.mkdir(parents=True, exist_ok=True)
        (self.folder / "key").unlink(missing_ok=True)
        added, root = self.folder / "added.tar", self.folder / "root.tar"
        pack(added, self.files)
        hooks = [f"--customize-hook={hook}" for hook in [f"tar-in {added} /", *self.hooks]]
        with open(self.folder / "log", "w") as log:
            run("mmdebstrap", "--variant=minbase", *[f"--include={package}" for package in self.packages],
                '--aptopt=Acquire::Retries "5"', *hooks, suite(), root, stdout=log, stderr=log)
            self.make_disk(root, log)
        root.unlink()
        (self.folder / "key").write_text(self.key)

    def make_disk(self, root, log):
        """Fills the disk without mounting it. Without root, the owners of files are those of a user namespace."""
        unpacked = self.folder / "root"
        script = (f'set -e; rm -rf "{unpacked}"; mkdir "{unpacked}"; tar --extract --file "{root}" '
                  f'--directory "{unpacked}" --numeric-owner --exclude "./dev/*"; '
                  f'cp "{unpacked}"/boot/vmlinuz-* "{self.kernel}"; cp "{unpacked}"/boot/initrd.img-* "{self.initrd}"; '
                  f'rm -f "{self.disk}"; truncate --size {self.recipe.disk_size} "{self.disk}"; '
                  f'/sbin/mkfs.ext4 -q -d "{unpacked}" "{self.disk}"; rm -rf "{unpacked}"')
        inside = [] if os.geteuid() == 0 else ["mmdebstrap", "--unshare-helper"]
        run(*inside, "sh", "-c", script, stdout=log, stderr=log)


def make_image(path, size=24 << 20):
    """Makes an image like those that users download, always the same: two volumes without gaps. Both are FAT, because
    mounting and unmounting them leaves no trace."""
    noise = random.Random(1)
    with open(path, "wb") as file:
        for _ in range(size >> 20):
            file.write(noise.randbytes(1 << 20))
    layout = "label: dos\nlabel-id: 0x7e55e100\nstart=2048, size=8192, type=c\nstart=10240, type=c\n"
    run("/sbin/sfdisk", "--quiet", path, input=layout.encode(), stdout=subprocess.DEVNULL)
    for label, start, blocks in (("BOOT", 2048, 4096), ("SYSTEM", 10240, (size >> 10) - 5120)):
        run("/sbin/mkfs.vfat", "--invariant", "-n", label, f"--offset={start}", path, blocks, capture_output=True)
