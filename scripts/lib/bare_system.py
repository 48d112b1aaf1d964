"""A minimal Debian system in its own folder."""

import ctypes
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

NEW_MOUNTS = 0x00020000  # CLONE_NEWNS


def missing():
    """Why such a system cannot be created here; none if it can."""
    if os.geteuid() != 0:
        return "only the superuser can set up a system"
    if "VERSION_ID=\"12\"" not in Path("/etc/os-release").read_text():
        return "this is not Debian 12"
    if not shutil.which("debootstrap"):
        return "debootstrap is missing"
    return None


class BareSystem:
    """A context manager. It shares /tmp with this system, and so displays, buses and PipeWire. `suite`
    is the Debian release; with a newer one than this system's only its main archive is used.
    """

    def __init__(self, suite="bookworm"):
        self._suite = suite
        self._folder = tempfile.TemporaryDirectory(prefix="velun-system.", dir="/var/tmp")
        self.root = Path(self._folder.name)

    def __enter__(self):
        # What is mounted from now on is seen by this process and its children only, and goes with
        # them.
        libc = ctypes.CDLL(None, use_errno=True)
        if libc.unshare(NEW_MOUNTS) != 0:
            raise OSError(ctypes.get_errno(), "no mounts of one's own")
        run("mount", "--make-rprivate", "/")
        run("debootstrap", "--variant=minbase", self._suite, self.root, archive())
        own = ("sources.list", "sources.list.d") if self._suite == "bookworm" else ()
        for settings in (*own, "trusted.gpg.d", "apt.conf.d"):
            copy(Path("/etc/apt") / settings, self.root / "etc/apt" / settings)
        copy(Path("/etc/resolv.conf"), self.root / "etc/resolv.conf")
        run("mount", "-t", "proc", "proc", self.root / "proc")
        run("mount", "--bind", "/dev", self.root / "dev")
        run("mount", "--bind", "/tmp", self.root / "tmp")
        self.run("apt-get", "update")
        return self

    def __exit__(self, *_):
        for place in ("tmp", "dev", "proc"):
            subprocess.run(["umount", "--lazy", self.root / place], check=False)
        self._folder.cleanup()

    def inside(self, *command):
        """The command that runs `command` in that system."""
        return ["chroot", str(self.root), *command]

    def run(self, *command):
        return run("env", "DEBIAN_FRONTEND=noninteractive", *self.inside(*command))

    def install(self, package):
        self.run("apt-get", "install", "-y", "--no-install-recommends", package)


def archive():
    """The package sources of this system."""
    for line in run("apt-get", "indextargets", "--format", "$(REPO_URI) $(RELEASE)").splitlines():
        address, release = line.split()
        if release == "bookworm":
            return address
    raise AssertionError("This system gets no packages of Debian 12")


def copy(source, target):
    if source.is_dir():
        shutil.copytree(source, target, dirs_exist_ok=True)
    elif source.exists():
        shutil.copy(source, target)


def run(*command):
    done = subprocess.run([str(part) for part in command], check=False, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    assert done.returncode == 0, done.stdout
    return done.stdout
