"""GNOME Shell with its tray extension."""

import re
from contextlib import contextmanager

import dbus

import cast
from session import ASIDE
from wayland import SOCKET, WaylandSession

SHELL = ("gdbus", "call", "--session", "--dest", "org.gnome.Shell", "--object-path",
         "/org/gnome/Shell", "--method")
REMOTE = "org.gnome.Mutter.RemoteDesktop"
CAST = "org.gnome.Mutter.ScreenCast"
SCREENS = "org.gnome.Mutter.DisplayConfig"
BUTTONS = {"left": 0x110, "right": 0x111}  # as in the kernel's list
FAR = 10000.0  # pixels, more than any screen has


class Gnome(WaylandSession):
    NAME = "gnome"
    TITLE = "GNOME Shell"
    PACKAGE = "gnome-shell"
    DESKTOP = "GNOME"
    PORTALS = ("gnome", "gtk")
    CAST = "a real cast"
    MENU = "by the grid of applications"
    LOGIN = ["gnome-session", "--builtin", "--session", "velun"]
    EXTENSION = "ubuntu-appindicators@ubuntu.com"

    def _start_display(self):
        self.environment["GNOME_SHELL_SESSION_MODE"] = "user"
        interface = "org.gnome.desktop.interface"
        for place, key, value in (
                ("org.gnome.shell", "enabled-extensions", f"['{self.EXTENSION}']"),
                ("org.gnome.shell", "welcome-dialog-last-shown-version", "99"),
                (interface, "enable-animations", "false"),
                # It announces that there is no screen lock.
                ("org.gnome.desktop.notifications", "show-banners", "false"),
                # A pointer that is sent to the corner would open the overview.
                (interface, "enable-hot-corners", "false")):
            self.run("gsettings", "set", place, key, value)
        self.start(["gnome-shell", "--headless", "--wayland", "--unsafe-mode", "--wayland-display",
                    SOCKET, *["--virtual-monitor", "%dx%d" % self.SIZE] * self.outputs],
                   log="manager")
        self.wait("GNOME Shell", lambda: self.owns("org.gnome.Shell"), 60)
        run = self.root / "run"
        self.wait_for_socket(run / SOCKET)
        self.wait_for_x_server("manager", r"Using public X11 display (:\d+)")
        cookies = self.wait("the X server's key",
                            lambda: next(run.glob(".mutter-Xwaylandauth.*"), None))
        self.environment["XAUTHORITY"] = str(cookies)
        self.wait("the end of the start", lambda: "false" in self.evaluate(
            "Main.layoutManager._startingUp"), 60)
        self.evaluate("Main.overview.hide()")
        # Otherwise it asks programs for none, as there is no graphics card.
        self.evaluate("imports.gi.St.Settings.get().uninhibit_animations(); 0")

    def start_bar(self):
        self.wait_for_tray()
        if self.logs_in:
            folder = self.home / "config" / "gnome-session" / "sessions"
            folder.mkdir(parents=True)
            # The shell runs already.
            (folder / "velun.session").write_text(
                "[GNOME Session]\nName=Velun\nRequiredComponents=\n")
            self.start(self.LOGIN, log="session")

    def evaluate(self, script):
        return self.run(*SHELL, "org.gnome.Shell.Eval", script)

    def take_picture(self, path):
        self.run("gdbus", "call", "--session", "--dest", "org.gnome.Shell.Screenshot",
                 "--object-path", "/org/gnome/Shell/Screenshot", "--method",
                 "org.gnome.Shell.Screenshot.Screenshot", "false", "false", path)

    def click(self, x, y, button="left"):
        with self._remote_pointer(x, y) as call:
            for is_pressed in (True, False):
                call("NotifyPointerButton", "ib", BUTTONS[button], is_pressed)
            self.steady_picture()

    @contextmanager
    def pointer_at(self, x, y):
        # One pointer stays to the end: for X programs it never leaves when there is none left.
        if not self._pointer:
            self._pointer, _ = self._new_pointer()
        with self._remote_pointer(x, y) as call:
            def leave():
                call("NotifyPointerMotionRelative", "dd", -FAR, -FAR)
                call("NotifyPointerMotionRelative", "dd", *map(float, ASIDE))

            yield leave

    @contextmanager
    def _remote_pointer(self, x, y):
        """A pointer at a place until the end."""
        bus, call = self._new_pointer()
        call("NotifyPointerMotionRelative", "dd", -FAR, -FAR)
        call("NotifyPointerMotionRelative", "dd", float(x) - self.shift(x, y), float(y))
        try:
            yield call
        finally:
            bus.close()

    def _new_pointer(self):
        """The connection with which it ends, and a function that calls its methods. While there is
        one, a sign in the bar moves the icons.
        """
        bus = dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        path = str(bus.call_blocking(REMOTE, "/org/gnome/Mutter/RemoteDesktop", REMOTE,
                                     "CreateSession", "", []))

        def call(method, signature="", *arguments):
            bus.call_blocking(REMOTE, path, REMOTE + ".Session", method, signature, arguments)

        call("Start")
        return bus, call

    def shift(self, x, y):
        """How far the sign has moved what is at this point of the bar."""
        width = self.evaluate(
            "let a = Main.panel.statusArea; "
            "Math.round((a.screenSharing ?? a.remoteAccess)?.container?.width ?? 0)")
        found = re.search(r"'(\d+)'", width)
        return int(found[1]) if found and y < 32 and x > self.SIZE[0] / 2 else 0

    def show_next_workspace(self):
        self.evaluate("global.workspace_manager.append_new_workspace("
                      "true, global.get_current_time()); 0")

    def show_first_workspace(self):
        self.evaluate("global.workspace_manager.get_workspace_by_index(0).activate("
                      "global.get_current_time()); 0")

    def start_from_menu(self):
        self.evaluate("imports.gi.Shell.AppSystem.get_default().lookup_app("
                      "'app.velun.Velun.desktop').activate(); 0")

    @contextmanager
    def cast(self):
        """A cast of the whole screen, as the portal starts it for a video conference."""
        bus = dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        try:
            session = bus.call_blocking(CAST, "/org/gnome/Mutter/ScreenCast", CAST, "CreateSession",
                                        "a{sv}", [{}])
            bus.call_blocking(CAST, session, CAST + ".Session", "RecordMonitor", "sa{sv}", ["", {}])
            bus.call_blocking(CAST, session, CAST + ".Session", "Start", "", [])
            with cast.consumer(self, lambda properties:
                               properties.get("media.name") == "meta-screen-cast-src"):
                yield
        finally:
            bus.close()

    def remove_output(self):
        self._use_outputs(self.outputs - 1)

    def return_output(self):
        self._use_outputs(self.outputs)

    def _use_outputs(self, count):
        """The first ones, side by side, as the settings for displays do it."""
        bus = dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        try:
            place = (SCREENS, "/org/gnome/Mutter/DisplayConfig", SCREENS)
            serial, monitors, _, _ = bus.call_blocking(*place, "GetCurrentState", "", [])
            used = [(number * self.SIZE[0], 0, 1.0, dbus.UInt32(0), number == 0,
                     [(connector, modes[0][0], {})])
                    for number, ((connector, *_), modes, _) in enumerate(monitors[:count])]
            bus.call_blocking(*place, "ApplyMonitorsConfig", "uua(iiduba(ssa{sv}))a{sv}",
                              [serial, dbus.UInt32(1), used, {}])
        finally:
            bus.close()
