"""Plasma 5 on Wayland and X11."""

import shutil
from pathlib import Path

from wayland import SOCKET, WaylandSession
from x11 import X11Session

WRAPPER = Path("/usr/bin/kwin_wayland_wrapper")
ACTIVITIES = "/usr/lib/x86_64-linux-gnu/libexec/kactivitymanagerd"
KWIN = ("gdbus", "call", "--session", "--dest", "org.kde.KWin", "--object-path")
# Asks for a picture of the whole workspace; raw pixels come through a pipe.
SHOOT = "shoot_kwin.py"


class Plasma:
    """What both have in common; mixed into a session."""

    MENU = "by Plasma's own starter"

    def start_shell(self, platform):
        self.environment |= {"QT_QUICK_BACKEND": "software"}
        if self.logs_in:
            self.start(["env", f"QT_QPA_PLATFORM={platform}", *self.LOGIN], log="session")
            return
        self.start(["kded5"], log="services")
        self.start([ACTIVITIES], log="activities")
        self.start(["env", f"QT_QPA_PLATFORM={platform}", "plasmashell", "--no-respawn"],
                   log="bar")
        self.wait_for_tray()

    def show_workspace(self, number):
        self.run(*KWIN, "/VirtualDesktopManager", "--method",
                 "org.kde.KWin.VirtualDesktopManager.createDesktop", 1, "second")
        self.run(*KWIN, "/KWin", "--method", "org.kde.KWin.setCurrentDesktop", number)

    def show_next_workspace(self):
        self.show_workspace(2)

    def show_first_workspace(self):
        self.show_workspace(1)

    def set_dark(self, dark):
        self.run("plasma-apply-colorscheme", "BreezeDark" if dark else "BreezeLight")

    def set_less_motion(self, less):
        """Plasma's settings write the key and announce it."""
        key = "AnimationDurationFactor"
        self.run("kwriteconfig5", "--file", "kdeglobals", "--group", "KDE", "--key", key,
                 "0" if less else "1")
        name = ", ".join(f"byte {code}" for code in key.encode())
        self.run("gdbus", "emit", "--session", "--object-path", "/kdeglobals", "--signal",
                 "org.kde.kconfig.notify.ConfigChanged", f"{{'KDE': [[{name}]]}}")

    def start_from_menu(self):
        self.start(["kstart5", "--application", "app.velun.Velun"])

    def set_high_contrast(self, high):
        raise NotImplementedError("Plasma 5.27 has no such setting")


class PlasmaWayland(Plasma, WaylandSession):
    NAME = "plasma"
    TITLE = "Plasma (Wayland)"
    PACKAGE = "plasma-workspace"
    DESKTOP = "KDE"
    TRAY_BUTTON = "right"
    PORTALS = ("kde",)
    LOGIN = ["plasma_session"]

    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self.environment |= {"KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5",
                             "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1",
                             "KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1"}

    def _start_display(self):
        """Plasma's session starts the compositor itself, by a command of this name."""
        options = ["--virtual", "--width", self.SIZE[0], "--height", self.SIZE[1],
                   "--output-count", self.outputs, "--no-lockscreen", "--no-global-shortcuts"]
        # A copy has no file capabilities, which may not be used here; its name must stay.
        folder = self.root / "bin"
        folder.mkdir()
        kwin = shutil.copy("/usr/bin/kwin_wayland", folder)
        if self.logs_in:
            wrapper = folder / WRAPPER.name
            wrapper.write_text(f'#!/bin/sh\nexec {WRAPPER} {" ".join(map(str, options))} "$@"\n')
            wrapper.chmod(0o755)
            self.environment["PATH"] = f"{folder}:{self.environment['PATH']}"
            return
        self.start([kwin, *options, "--xwayland", "--socket", SOCKET], log="manager")
        self._wait_for_kwin(SOCKET)

    def _wait_for_kwin(self, socket):
        run = self.root / "run"
        self.wait_for_socket(run / socket)
        self.wait("KWin", lambda: self.owns("org.kde.KWin"))
        self.wait_for_any_x_server()
        if cookies := next(run.glob("xauth_*"), None):
            self.environment["XAUTHORITY"] = str(cookies)

    def start_bar(self):
        if self.logs_in:
            self.start_shell("wayland")
            self._wait_for_kwin("wayland-0")
            return
        super().start_bar()
        self.start_shell("wayland")

    def take_picture(self, path):
        self.run("python3", "-B", self.helper(SHOOT), path)

    def remove_output(self):
        self.run("kscreen-doctor", f"output.{self.outputs}.disable")

    def return_output(self):
        number = self.outputs
        self.run("kscreen-doctor", f"output.{number}.enable",
                 f"output.{number}.position.{(number - 1) * self.SIZE[0]},0")


class PlasmaX11(Plasma, X11Session):
    NAME = "plasma-x11"
    TITLE = "Plasma (X11)"
    PACKAGE = "plasma-workspace"
    DESKTOP = "KDE"
    MANAGER = ["kwin_x11"]
    LOGIN = ["plasma_session"]
    MANAGER_NAME = "KWin"
    TRAY_BUTTON = "right"
    PORTALS = ("kde",)

    def __init__(self, *arguments, **options):
        super().__init__(*arguments, **options)
        self.environment |= {"KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}

    def _start_manager(self):
        """Plasma's session is begun by what starts the shell."""
        self.window_manager = self.start(self.MANAGER, log="manager")

    def start_bar(self):
        self.start_shell("xcb")
