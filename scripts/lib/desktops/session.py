"""A session of a real desktop without a screen, inside the system that scripts/desktops builds."""

import os
import shutil
import signal
import subprocess
import sys
from contextlib import contextmanager, suppress
from pathlib import Path

from private_desktop import PrivateDesktop, polling

import cast
import pictures

PORTALS = Path("/usr/share/xdg-desktop-portal/portals")
STEADY = 4  # equal pictures in a row
START = 90  # seconds for the parts of a desktop on a busy machine
ASIDE = (6, 600)  # a place that no window covers
ENTRY = "/usr/share/applications/app.velun.Velun.desktop"
OBSTACLE = Path(__file__).with_name("obstacle.py")


class Session(PrivateDesktop):
    """Each desktop is a subclass, which says what it can be asked."""

    NAME = ""  # of the command line and of the pictures
    TITLE = ""
    PACKAGE = ""  # whose version is told
    DESKTOP = ""  # XDG_CURRENT_DESKTOP
    TYPE = "x11"
    HAS_TRAY = True
    TRAY_BUTTON = "left"  # opens the icon's menu
    PORTALS = ("gtk",)
    OBSTACLES = ("x11",)  # which windows can stand in the way
    SIZE = (1280, 800)  # of each output
    CAST = ""  # what stands for a shared screen, unless it is a real one
    MENU = ""  # what starts programs
    KEEPS_OUTPUTS = ""  # why no output can be removed
    LOGIN = ()  # the command that begins a session of the user and starts the entries of autostart
    NO_LOGIN = ""  # why there is none

    def __init__(self, outputs=1, autostart=None):
        """The outputs lie side by side. With `autostart`, the folder of such entries, the desktop
        begins a session of the user as after a log-in.
        """
        super().__init__("%dx%d" % (outputs * self.SIZE[0], self.SIZE[1]))
        self.outputs = outputs
        self.logs_in = autostart is not None
        if self.logs_in:
            shutil.copytree(autostart, self.autostart)
        (self.root / "portals").mkdir()
        for name in self.PORTALS:
            shutil.copy(PORTALS / f"{name}.portal", self.root / "portals")
        self.environment |= {
            "LIBGL_ALWAYS_SOFTWARE": "1", "QT_QUICK_BACKEND": "software",
            "XDG_CURRENT_DESKTOP": self.DESKTOP, "XDG_SESSION_TYPE": self.TYPE,
            "XDG_DESKTOP_PORTAL_DIR": str(self.root / "portals"), "SHELL": "/bin/sh",
            "NO_AT_BRIDGE": "1"}  # of the bars; the program does not use it

    def __enter__(self):
        super().__enter__()
        try:
            self.start_sound()
            self.run("dbus-update-activation-environment", "--all")
            self.start_bar()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        if self.logs_in:
            self._end_all()
        super().__exit__()

    def _end_all(self):
        """A session of the user starts programs that outlive it."""
        for process in self._processes_of_session():
            with suppress(ProcessLookupError):
                os.kill(process, signal.SIGKILL)
        self.wait("the session's programs to end", lambda: not self._processes_of_session())

    def _processes_of_session(self):
        """Every one with this session's folder; one that has ended tells no environment."""
        folder = f"XDG_RUNTIME_DIR={self.environment['XDG_RUNTIME_DIR']}".encode()
        found = []
        for path in Path("/proc").glob("[0-9]*/environ"):
            with suppress(OSError):
                if folder in path.read_bytes().split(b"\0"):
                    found.append(int(path.parent.name))
        return found

    def _start_bus(self):
        super()._start_bus()
        system = self.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                            stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = system.stdout.readline().strip()
        system.stdout.close()
        # A manager of logins that agrees to everything, for GNOME and Plasma.
        self.start(["python3", "-m", "dbusmock", "--system", "--template", "logind"], log="logins")
        self.wait("the manager of logins", lambda: self.owns("org.freedesktop.login1", "--system"))

    @property
    def autostart(self):
        """The user's folder of entries that are started after a log-in."""
        return self.home / "config" / "autostart"

    def owns(self, name, bus="--session"):
        return "true" in self.run("gdbus", "call", bus, "--dest", "org.freedesktop.DBus",
                                  "--object-path", "/org/freedesktop/DBus", "--method",
                                  "org.freedesktop.DBus.NameHasOwner", name)

    def start_bar(self):
        """Starts what is beside the window manager, and waits for a host of status icons."""

    def wait_for_tray(self):
        self.wait("a host of status icons", lambda: "true" in self.run(
            "gdbus", "call", "--session", "--dest", "org.kde.StatusNotifierWatcher",
            "--object-path", "/StatusNotifierWatcher", "--method",
            "org.freedesktop.DBus.Properties.Get", "org.kde.StatusNotifierWatcher",
            "IsStatusNotifierHostRegistered"), START)
        self.steady_picture()

    def click(self, x, y, button="left"):
        raise NotImplementedError

    def move_to(self, x, y):
        raise NotImplementedError("nothing moves the pointer here")

    @contextmanager
    def pointer_at(self, x, y):
        """Moves the pointer there from beside everything; gives a function that moves it back. It
        may exist only until the end of the context.
        """
        self.move_to(*ASIDE)
        self.move_to(x, y)
        yield lambda: self.move_to(*ASIDE)

    def remove_output(self):
        """Takes the last output away."""
        raise NotImplementedError(self.KEEPS_OUTPUTS)

    def return_output(self):
        """Brings it back to its place."""
        raise NotImplementedError(self.KEEPS_OUTPUTS)

    def start_from_menu(self):
        """Starts the program as the desktop's menu does."""
        raise NotImplementedError("no menu")

    @contextmanager
    def cast(self):
        """Shares the screen with another program."""
        with cast.stand_in(self):
            yield

    def show_next_workspace(self):
        """Goes to another workspace, which is empty."""
        raise NotImplementedError

    def show_first_workspace(self):
        raise NotImplementedError

    def move_panel(self, x, y):
        """Moves the panel's window there as a window manager does; whether that is possible. It is
        for windows of X11 only, XWayland's too.
        """
        ids = self.run("xdotool", "search", "--onlyvisible", "--name", "^Velun Captions$").split()
        if not ids:
            return False
        self.run("xdotool", "windowmove", ids[-1], x, y)
        return True

    def set_dark(self, dark):
        """Prefers dark or light windows, as the desktop's settings do."""
        self.run("gsettings", "set", "org.gnome.desktop.interface", "color-scheme",
                 "prefer-dark" if dark else "prefer-light")

    def set_less_motion(self, less):
        self.run("gsettings", "set", "org.gnome.desktop.interface", "enable-animations",
                 str(not less).lower())

    def set_high_contrast(self, high):
        self.run("gsettings", "set", "org.gnome.desktop.a11y.interface", "high-contrast",
                 str(high).lower())

    def helper(self, name):
        return Path(__file__).with_name(name)

    def picture(self):
        path = self.root / "picture.png"

        def taken():
            """In a list: a picture has no truth value. Now and then a tool writes no whole file."""
            path.unlink(missing_ok=True)
            try:
                self.take_picture(path)
                return [pictures.load(path)]
            except (OSError, subprocess.TimeoutExpired):
                return None

        return self.wait("a picture", taken, START)[0]

    def steady_picture(self, seconds=20):
        """A picture of a screen on which nothing large changes any more."""
        last, same = self.picture(), 0
        for _ in polling(seconds):
            now = self.picture()
            same = same + 1 if pictures.differing(last, now).sum() < 60 else 0
            last = now
            if same == STEADY:
                break
        return last

    def show_obstacle(self, kind, colour, full_screen):
        """Shows a window that is in the way, of X11 or Wayland. Returns its process."""
        options = ["--full-screen"] if full_screen else []
        before = dict(self.environment)
        self.environment["GDK_BACKEND"] = kind
        try:
            window = self.start([sys.executable, OBSTACLE, colour, *options],
                                stdout=subprocess.PIPE, text=True)
        finally:
            self.environment = before
        assert window.stdout.readline().strip() == "shown", "the obstacle did not show"
        self.steady_picture()
        return window
