"""Desktops on Wayland compositors without a screen."""

import re
from pathlib import Path

from session import Session
from wayland_pointer import WaylandPointer

SOCKET = "velun-wayland"


class WaylandSession(Session):
    TYPE = "wayland"
    OBSTACLES = ("x11", "wayland")
    _pointer = None

    def __exit__(self, *_):
        if self._pointer:
            self._pointer.close()
        super().__exit__(*_)

    def start_bar(self):
        self._pointer = WaylandPointer(
            self.root / "run" / self.environment["WAYLAND_DISPLAY"],
            (self.outputs * self.SIZE[0], self.SIZE[1]))

    def click(self, x, y, button="left"):
        self._pointer.click(x, y, button)

    def move_to(self, x, y):
        self._pointer.move_to(x, y)

    def drag(self, x, y, by):
        """Drags with the left button, in steps as a hand does."""
        self._pointer.move_to(x, y)
        self._pointer.button("left", True)
        for _ in range(10):
            self._pointer.move_by(by[0] / 10, by[1] / 10)
        self._pointer.button("left", False)

    def wait_for_socket(self, path):
        self.wait("the compositor's socket", path.is_socket)
        self.environment["WAYLAND_DISPLAY"] = path.name

    def wait_for_any_x_server(self):
        """The only one: nothing else runs here."""
        self.environment["DISPLAY"] = ":" + self.wait("XWayland", lambda: next(
            (path.name[1:] for path in Path("/tmp/.X11-unix").glob("X*")), None))

    def wait_for_x_server(self, log, pattern):
        found = self.wait("XWayland", lambda: re.search(pattern, self.log_path(log).read_text()))
        self.environment["DISPLAY"] = found[1]


class Sway(WaylandSession):
    NAME = "sway"
    TITLE = "sway"
    PACKAGE = "sway"
    DESKTOP = "sway"
    HAS_TRAY = False
    PORTALS = ("wlr", "gtk")
    MENU = "by the command of its menu"
    KEEPS_OUTPUTS = "sway 1.7 without a screen keeps its outputs"
    NO_LOGIN = "sway starts what its configuration names"
    CONFIGURATION = """output * resolution 1280x800 bg #5d7389 solid_color
default_border pixel 1
xwayland enable
"""

    def _start_display(self):
        self.environment |= {"WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1",
                             "WLR_RENDERER": "pixman", "WLR_HEADLESS_OUTPUTS": str(self.outputs)}
        path = self.root / "sway.conf"
        path.write_text(self.CONFIGURATION)
        self.start(["sway", "-d", "-c", path], log="manager")
        run = self.root / "run"
        control = self.wait("sway", lambda: next(run.glob("sway-ipc.*.sock"), None))
        self.environment["SWAYSOCK"] = str(control)
        self.wait("its outputs", lambda: self.run("swaymsg", "-t", "get_outputs"))
        socket = self.wait("its socket", lambda: next(
            (path for path in run.glob("wayland-*") if path.is_socket()), None))
        self.wait_for_socket(socket)
        self.wait_for_any_x_server()

    def take_picture(self, path):
        self.run("grim", path)

    def start_from_menu(self):
        """Its menu lists programs, not entries."""
        self.run("swaymsg", "exec", "velun")

    def show_next_workspace(self):
        self.run("swaymsg", "workspace", "2")

    def show_first_workspace(self):
        self.run("swaymsg", "workspace", "1")


class SwayBar(Sway):
    NAME = "sway-waybar"
    TITLE = "sway with Waybar"
    HAS_TRAY = True
    TRAY_BUTTON = "right"
    BAR = '{"position": "top", "height": 28, "modules-right": ["tray"]}'

    def start_bar(self):
        super().start_bar()
        path = self.root / "waybar.json"
        path.write_text(self.BAR)
        self.start(["waybar", "-c", path], log="bar")
        self.wait_for_tray()


class Weston(WaylandSession):
    NAME = "weston"
    TITLE = "Weston"
    PACKAGE = "weston"
    DESKTOP = "weston"
    KEEPS_OUTPUTS = "Weston without a screen keeps its outputs"
    NO_LOGIN = "Weston starts what its configuration names"
    HAS_TRAY = False

    def _start_display(self):
        self.start(["weston", "--backend=headless-backend.so", "--use-pixman", "--width=1280",
                    "--height=800", f"--socket={SOCKET}", "--xwayland", "--debug",
                    "--idle-time=0"], log="manager")
        self.wait_for_socket(self.root / "run" / SOCKET)
        self.wait_for_x_server("manager", r"xserver listening on display (:\d+)")

    def start_bar(self):
        """It lets no other program move the pointer."""

    def move_to(self, x, y):
        raise NotImplementedError("Weston lets no program move the pointer")

    def take_picture(self, path):
        for old in self.root.glob("wayland-screenshot-*.png"):
            old.unlink()
        self.run("sh", "-c", f"cd {self.root} && weston-screenshooter")
        for taken in self.root.glob("wayland-screenshot-*.png"):
            taken.rename(path)
