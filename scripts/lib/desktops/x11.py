"""Desktops on a virtual X display."""

from session import ENTRY, Session

MONITOR = "%d/340x%d/210+%d+0"  # size in pixels and millimetres, and left edge


class X11Session(Session):
    MANAGER = ()
    MANAGER_NAME = ""  # which it tells on the display
    BAR = ()

    def _start_manager(self):
        """After a log-in the desktop starts it, and the bar."""
        self.window_manager = self.start(self.LOGIN if self.logs_in else self.MANAGER,
                                         log="session" if self.logs_in else "manager")

    def _start_display(self):
        if self.logs_in:
            self.prepare_login()
        super()._start_display()
        self.wait(f"the window manager {self.MANAGER_NAME}",
                  lambda: self.manager_name() == self.MANAGER_NAME)
        # The display has one output, of which several are made.
        for number in range(self.outputs if self.outputs > 1 else 0):
            self._make_part(number)

    def prepare_login(self):
        """Writes the settings of a log-in."""

    def manager_name(self):
        window = self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK").split()[-1:]
        told = self.run("xprop", "-id", *window, "_NET_WM_NAME")
        return told.split('"')[1] if '"' in told else ""

    def start_bar(self):
        if self.logs_in:
            return
        self.run("xsetroot", "-solid", "#5d7389")
        self.prepare_bar()
        self.start(self.BAR, log="bar")
        self.wait_for_tray()

    def prepare_bar(self):
        """Writes the bar's settings."""

    def remove_output(self):
        self.run("xrandr", "--delmonitor", f"part{self.outputs - 1}")

    def return_output(self):
        self._make_part(self.outputs - 1)

    def _make_part(self, number):
        """Of the display's only output."""
        self.run("xrandr", "--setmonitor", f"part{number}",
                 MONITOR % (*self.SIZE, number * self.SIZE[0]), "none" if number else "screen")

    def click(self, x, y, button="left"):
        number = {"left": 1, "middle": 2, "right": 3}[button]
        self.run("xdotool", "mousemove", x, y, "click", number)

    def move_to(self, x, y):
        self.run("xdotool", "mousemove", x, y)

    def show_next_workspace(self):
        self.run("xdotool", "set_num_desktops", 2)
        self.wait("two workspaces", lambda: self.run("xdotool", "get_num_desktops").strip() == "2")
        self._show_workspace(1)

    def show_first_workspace(self):
        self._show_workspace(0)

    def _show_workspace(self, number):
        self.run("xdotool", "set_desktop", number)
        self.wait("the other workspace",
                  lambda: self.run("xdotool", "get_desktop").strip() == str(number))


class Xfce(X11Session):
    NAME = "xfce"
    TITLE = "Xfce"
    PACKAGE = "xfwm4"
    DESKTOP = "XFCE"
    MANAGER = ["xfwm4"]
    MANAGER_NAME = "Xfwm4"
    LOGIN = ["xfce4-session"]
    BAR = ["xfce4-panel", "--disable-wm-check"]
    MENU = "by exo-open"

    def prepare_bar(self):
        self.start(["/usr/lib/x86_64-linux-gnu/xfce4/xfconf/xfconfd"], log="settings")
        self.wait("Xfce's settings", lambda: self.owns("org.xfce.Xfconf"))
        for name, kind, *values in (
                ("/configver", "int", 2), ("/panels", "int", 1),
                ("/panels/panel-1/position", "string", "p=6;x=0;y=0"),
                ("/panels/panel-1/length", "uint", 100), ("/panels/panel-1/size", "uint", 28),
                ("/panels/panel-1/position-locked", "bool", "true"),
                ("/panels/panel-1/plugin-ids", "int", 1, 2),
                ("/plugins/plugin-1", "string", "tasklist"),
                ("/plugins/plugin-2", "string", "systray")):
            is_list = name in ("/panels", "/panels/panel-1/plugin-ids")
            self.run("xfconf-query", "-c", "xfce4-panel", "-n", "-p", name,
                     *(["-a"] if is_list else []),
                     *[part for value in values for part in ("-t", kind, "-s", value)])

    def start_from_menu(self):
        self.start(["exo-open", ENTRY])


class Mate(X11Session):
    NAME = "mate"
    TITLE = "MATE"
    PACKAGE = "marco"
    DESKTOP = "MATE"
    MANAGER = ["marco"]
    MANAGER_NAME = "Metacity (Marco)"
    LOGIN = ["mate-session"]
    BAR = ["mate-panel"]
    MENU = "by GLib, as the panel's menu"

    def start_from_menu(self):
        self.start(["gio", "launch", ENTRY])


class Lxqt(X11Session):
    NAME = "lxqt"
    TITLE = "LXQt (Openbox)"
    PACKAGE = "lxqt-panel"
    DESKTOP = "LXQt"
    MANAGER = ["openbox"]
    MANAGER_NAME = "Openbox"
    LOGIN = ["lxqt-session"]
    BAR = ["lxqt-panel"]
    MENU = "in the panel's menu"
    PANEL = """[General]
__userfile__=true
panels=panel1
[panel1]
plugins=mainmenu,taskbar,statusnotifier
position=Bottom
panelSize=32
width-percent=true
width=100
[mainmenu]
type=mainmenu
[taskbar]
type=taskbar
[statusnotifier]
type=statusnotifier
"""

    def prepare_bar(self):
        self._configure("panel", self.PANEL)

    def prepare_login(self):
        """Otherwise it asks which window manager there is to be."""
        self._configure("session", "[General]\nwindow_manager=openbox\n")

    def _configure(self, name, text):
        folder = self.home / "config" / "lxqt"
        folder.mkdir()
        (folder / f"{name}.conf").write_text(text)

    def start_from_menu(self):
        """The menu searches for what is typed."""
        self.click(16, self.SIZE[1] - 16)
        self.steady_picture()
        self.run("xdotool", "key", "ctrl+a")
        self.run("xdotool", "type", "velun")
        self.steady_picture()
        self.run("xdotool", "key", "Return")
