"""Private Wayland desktops on which the panel is a layer surface: sway and KWin, without a screen.
Neither has an X server.
"""

import json
import math
import os
import shutil
import subprocess
import threading

import dbus

from private_desktop import PrivateDesktop, end

WIDTH, HEIGHT = 1280, 800  # of an output, in points
NOBODY = "65534"
KWIN = "org.kde.KWin"
VIRTUAL_DESKTOPS = "org.kde.KWin.VirtualDesktopManager"
SCREENSHOT = "org.kde.KWin.ScreenShot2"


class CompositorDesktop(PrivateDesktop):
    """`outputs` lie side by side, from the left. `background` is (red, green, blue)."""

    background = None

    def __init__(self, outputs=1, scale=1):
        super().__init__()
        self.outputs = outputs
        self.scale = scale
        self.input = None

    def _start_display(self):
        self.environment |= {"LIBGL_ALWAYS_SOFTWARE": "1", "XDG_SESSION_TYPE": "wayland",
                             "XKB_DEFAULT_OPTIONS": "compose:ralt"}
        self.start_compositor_of_session()
        self.input = Input(self)

    def start_compositor_of_session(self):
        raise NotImplementedError

    def pixel(self, x, y):
        """The colour there, in points, on the screen."""
        return self.pixels(x, y, 1, 1)[0][0]


class Sway(CompositorDesktop):
    COMMAND = "sway"
    background = (0x5d, 0x73, 0x89)

    def start_compositor_of_session(self):
        config = self.root / "sway.config"
        config.write_text(f"output * resolution {WIDTH}x{HEIGHT} scale {self.scale} "
                          "bg #5d7389 solid_color\ndefault_border none\nxwayland disable\n")
        folder = self.root / "compositor"
        folder.mkdir()
        as_user = []
        if os.getuid() == 0:  # sway does not run as root
            for path in (self.root, folder):
                path.chmod(0o711)
            os.chown(folder, int(NOBODY), int(NOBODY))
            as_user = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
        self.start([*as_user, "env", f"XDG_RUNTIME_DIR={folder}", "WLR_BACKENDS=headless",
                    "WLR_LIBINPUT_NO_DEVICES=1", "WLR_RENDERER=pixman",
                    f"WLR_HEADLESS_OUTPUTS={self.outputs}", "sway", "-c", str(config)],
                   log="compositor")
        self.environment["SWAYSOCK"] = str(self.wait(
            "sway", lambda: next(folder.glob("sway-ipc.*.sock"), None)))
        self.wait("its outputs", lambda: len(self.ask("get_outputs") or []) == self.outputs)
        self.environment["WAYLAND_DISPLAY"] = str(next(
            path for path in folder.glob("wayland-*") if path.suffix != ".lock"))

    def ask(self, kind):
        answer = self.run("swaymsg", "--raw", "-t", kind)
        return json.loads(answer) if answer else None

    def windows(self):
        return [node["name"] for node in nodes(self.ask("get_tree")) if node.get("pid")]

    def go_to_other_workspace(self):
        self.run("swaymsg", "workspace", "other")

    def pixels(self, x, y, width, height):
        """Rows of colours; the position is in points, the size in pixels."""
        region = f"{x},{y} {math.ceil(width / self.scale)}x{math.ceil(height / self.scale)}"
        done = subprocess.run(["grim", "-s", str(self.scale), "-t", "ppm", "-g", region, "-"],
                              env=self.environment, capture_output=True, check=True, timeout=30)
        _, size, _, data = done.stdout.split(b"\n", 3)
        wide, high = map(int, size.split())
        return [[tuple(data[3 * (row * wide + column):][:3]) for column in range(min(wide, width))]
                for row in range(min(high, height))]

    def take_picture(self, path):
        self.run("grim", path)


class KWin(CompositorDesktop):
    COMMAND = "kwin_wayland"
    background = (0, 0, 0)

    def start_compositor_of_session(self):
        self.environment |= {"XDG_CURRENT_DESKTOP": "KDE", "KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1",
                             "KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1"}
        # A copy lacks the right to real-time scheduling, without which some systems do not start it.
        program = self.root / "kwin_wayland"
        shutil.copyfile(shutil.which("kwin_wayland"), program)
        program.chmod(0o755)
        self.start([program, "--virtual", "--width", WIDTH, "--height", HEIGHT, "--scale", self.scale,
                    "--output-count", self.outputs, "--socket", "wayland-kwin", "--no-lockscreen",
                    "--no-global-shortcuts"], log="compositor")
        self.wait("KWin", lambda: (self.root / "run" / "wayland-kwin").exists())
        self.environment["WAYLAND_DISPLAY"] = "wayland-kwin"
        self._bus = dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.wait("its services", lambda: self._bus.name_has_owner(KWIN))

    def __exit__(self, *arguments):
        if hasattr(self, "_bus"):
            self._bus.close()
        super().__exit__(*arguments)

    def go_to_other_workspace(self):
        self._bus.call_blocking(KWIN, "/VirtualDesktopManager", VIRTUAL_DESKTOPS, "createDesktop",
                                "us", [dbus.UInt32(1), "other"])
        self._bus.call_blocking(KWIN, "/KWin", KWIN, "setCurrentDesktop", "i", [2])

    def pixels(self, x, y, width, height):
        """Rows of colours; the position is in points, the size in pixels."""
        reader, writer = os.pipe()
        data = bytearray()
        thread = threading.Thread(target=read_all, args=(reader, data))
        thread.start()
        try:
            size = [max(1, round(length / self.scale)) for length in (width, height)]
            told = self._bus.call_blocking(
                KWIN, "/org/kde/KWin/ScreenShot2", SCREENSHOT, "CaptureArea", "iiuua{sv}h",
                [x, y, *size, {"native-resolution": True}, dbus.types.UnixFd(writer)])
        finally:
            os.close(writer)
            thread.join()
        wide, high, stride = (int(told[key]) for key in ("width", "height", "stride"))
        return [[tuple(reversed(data[row * stride + 4 * column:][:3]))
                 for column in range(min(wide, width))] for row in range(min(high, height))]

    def windows(self):
        """The titles of the windows of the program."""
        found = self._bus.call_blocking(KWIN, "/WindowsRunner", "org.kde.krunner1", "Match", "s",
                                        ["Velun"])
        return [str(title) for _, title, *_ in found]

    def remove_output(self, number):
        self.input.disable(number)


class Input:
    """A pointer and a keyboard."""

    def __init__(self, desktop):
        self._process = desktop.start(
            [os.environ["VELUN_VIRTUAL_INPUT"], WIDTH * desktop.outputs, HEIGHT],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        assert self._process.stdout.readline() == "ready\n", desktop.log_path("compositor").read_text()

    def move_to(self, x, y):
        self._do("to", x, y)

    def move_by(self, x, y):
        self._do("by", x, y)

    def press(self, *button):
        self._do("press", *button)

    def release(self, *button):
        self._do("release", *button)

    def click(self, *button):
        self.press(*button)
        self.release(*button)

    def key(self, code):
        """`code` is the kernel's."""
        self._do("key", code)

    def disable(self, output):
        """Switches an output of KWin's off; they count from 1."""
        self._do("disable", output)

    def close(self):
        for stream in (self._process.stdin, self._process.stdout):
            stream.close()
        end(self._process)

    def _do(self, *words):
        print(*words, file=self._process.stdin, flush=True)
        assert self._process.stdout.readline() == "done\n", words


def nodes(tree):
    """A container of sway's and all those in it."""
    yield tree
    for child in [*tree["nodes"], *tree["floating_nodes"]]:
        yield from nodes(child)


def read_all(descriptor, data):
    with os.fdopen(descriptor, "rb") as stream:
        data.extend(stream.read())
