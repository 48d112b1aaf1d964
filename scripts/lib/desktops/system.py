"""The Debian system in which the desktops run: made once with debootstrap and kept in the user's cache.
What runs in it has mounts, processes and a network of its own, so that all of it ends with its command.
"""

import os
import shutil
import subprocess
from pathlib import Path

from bare_system import archive, copy, run

REPOSITORY = Path(__file__).resolve().parents[3]
PACKAGES = (Path(__file__).with_name("packages.txt")).read_text().split()
USER = 1000
# Made by the package manager beside the files of packages.
KEPT_CHANGES = ("/var/lib/apt", "/var/lib/dpkg", "/var/cache", "/var/log", "/etc/ld.so.cache",
                "/etc/mailcap", "/root", "/tmp", "/run", "/var/lib/swcatalog")

ENTER = r"""
root=$1 repository=$2 output=$3; shift 3
mount --make-rprivate /
mount --rbind /dev "$root/dev"
mount -t tmpfs tmpfs "$root/run"
mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
mount -t sysfs sysfs "$root/sys" 2>/dev/null || mount --bind /sys "$root/sys"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
# KWin and Mutter end without it, or without its sticky bit.
mkdir -m 1777 "$root/tmp/.X11-unix"
# WirePlumber ends without these.
mkdir -p "$root"/run/systemd/{seats,users,sessions,machines} "$root/run/dbus"
mkdir -p "$root/velun/source" "$root/velun/output"
mount --bind "$repository" "$root/velun/source"
mount -o remount,ro,bind "$root/velun/source"
mount --bind "$output" "$root/velun/output"
ip link set lo up 2>/dev/null || true
exec chroot "$root" /usr/bin/env -i PATH=/usr/local/bin:/usr/bin:/bin:/usr/games LANG=C.UTF-8 \
  HOME=/home/user USER=user LOGNAME=user "$@"
"""


class DesktopSystem:
    """`folder` is kept from one use to the next."""

    def __init__(self, folder):
        self.root = Path(folder)

    def prepare(self):
        """Makes the system, or adds what a new list of packages needs."""
        done = self.root / "velun-packages"
        wanted = "\n".join(PACKAGES)
        if done.exists() and done.read_text() == wanted:
            return
        if not (self.root / "usr/bin/apt-get").exists():
            print("Making a system for the desktops (10 to 20 minutes, 4 GB)", flush=True)
            self.root.mkdir(parents=True, exist_ok=True)
            run("debootstrap", "--variant=minbase", "--include=ca-certificates", "bookworm",
                self.root, archive())
        for settings in ("sources.list", "sources.list.d", "trusted.gpg.d", "apt.conf.d"):
            copy(Path("/etc/apt") / settings, self.root / "etc/apt" / settings)
        # No service of the packages may start.
        policy = self.root / "usr/sbin/policy-rc.d"
        policy.write_text("#!/bin/sh\nexit 101\n")
        policy.chmod(0o755)
        self.administer("apt-get", "update")
        self.administer("apt-get", "install", "-y", "--no-install-recommends", *PACKAGES)
        if not (self.root / "home/user").exists():
            self.administer("useradd", "--create-home", "--uid", USER, "user")
        done.write_text(wanted)

    def administer(self, *command):
        """Runs a command as the superuser, with the machine's network."""
        copy(Path("/etc/resolv.conf"), self.root / "etc/resolv.conf")
        return run("unshare", "--mount", "--pid", "--fork", "--kill-child",
                   f"--mount-proc={self.root}/proc", "env", "DEBIAN_FRONTEND=noninteractive",
                   "LC_ALL=C.UTF-8", "chroot", self.root, *command)

    def install(self, package):
        """Installs a package of the program with what it depends on and recommends."""
        inside = self.root / "var/tmp" / Path(package).name
        shutil.copy(package, inside)
        try:
            self.administer("apt-get", "install", "-y", "--reinstall", "--allow-downgrades",
                            "/" + str(inside.relative_to(self.root)))
        finally:
            inside.unlink()

    def remove(self, name):
        self.administer("apt-get", "purge", "-y", name)

    def files(self):
        """The paths of all files but those that the package manager itself writes."""
        found = set()
        for folder, folders, names in os.walk(self.root):
            inside = "/" + os.path.relpath(folder, self.root).removeprefix(".")
            if inside.startswith(("/proc", "/sys", "/dev", *KEPT_CHANGES)):
                folders.clear()
                continue
            found |= {f"{inside.rstrip('/')}/{name}" for name in names}
        return {path for path in found if not path.startswith(KEPT_CHANGES)}

    def run(self, output, *command, timeout=1200):
        """Runs a command as an ordinary user, without a network. `output` is its folder for files,
        /velun/output inside; the repository is /velun/source. Returns the exit status.
        """
        shutil.chown(output, USER, USER)
        return subprocess.run(
            ["unshare", "--mount", "--pid", "--ipc", "--net", "--fork", "--kill-child",
             f"--mount-proc={self.root}/proc", "bash", "-ec", ENTER, "enter", self.root, REPOSITORY,
             output, "setpriv", "--reuid", str(USER), "--regid", str(USER), "--clear-groups",
             *command], check=False, timeout=timeout).returncode
