"""A desktop that nobody sees: its own folders, session bus, and virtual display with a window
manager; a sound server, a compositor and a tray on request. Ends everything that it started.
"""

import ctypes
import os
import re
import subprocess
import tempfile
import time
from pathlib import Path

SINK = "velun_private_output"
# Where nobody listens: nothing is fetched from the network.
NOWHERE = "http://127.0.0.1:9"
KEPT_VARIABLES = ("PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")


class PrivateDesktop:
    """A context manager. `environment` is that of everything started here, and may be changed."""

    def __init__(self, screen="1280x800"):
        self._screen = screen
        self._folder = tempfile.TemporaryDirectory(prefix="velun-desktop.")
        self.root = Path(self._folder.name)
        self.home = self.root / "home"
        self._processes = []
        self.window_manager = None
        self.display = None  # the display server's process
        self.environment = {k: os.environ[k] for k in KEPT_VARIABLES if k in os.environ}
        self.environment |= {"HOME": str(self.home), "LC_ALL": "C.UTF-8", "TZ": "UTC",
                             "XDG_RUNTIME_DIR": str(self.root / "run"),
                             "VELUN_MODEL_MIRROR": NOWHERE}
        for name in ("DATA", "CONFIG", "CACHE", "STATE"):
            path = self.home / name.lower()
            path.mkdir(parents=True, mode=0o700)
            self.environment[f"XDG_{name}_HOME"] = str(path)
        (self.root / "run").mkdir(mode=0o700)

    def __enter__(self):
        try:
            self._start_bus()
            self._start_display()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            end(process)
        self._folder.cleanup()

    def start(self, command, log=None, **options):
        """Starts a process that ends with the desktop; its output goes into the log, if named."""
        output = open(self.log_path(log), "w", encoding="utf-8") if log else subprocess.DEVNULL
        options = {"stdout": output, "stderr": output} | options
        try:
            process = subprocess.Popen([str(part) for part in command], env=self.environment,
                                       **options)
        finally:
            if log:
                output.close()
        self._processes.append(process)
        return process

    def log_path(self, name):
        return self.root / f"{name}.log"

    def run(self, *command):
        """The output of a command; empty when it failed."""
        done = subprocess.run([str(part) for part in command], env=self.environment, check=False,
                              text=True, timeout=30, capture_output=True)
        return done.stdout if done.returncode == 0 else ""

    def wait(self, what, condition, seconds=30):
        """Until the condition holds; returns its value."""
        end_time = time.monotonic() + seconds
        while not (result := condition()):
            if time.monotonic() > end_time:
                raise AssertionError(f"Waited {seconds} s in vain for {what}")
            time.sleep(0.02)
        return result

    def start_sound(self):
        """A sound server and its session manager with one output, the default; returns both."""
        server = self.start(["pipewire"], log="pipewire")
        self.wait("the sound server", lambda: self.run("pw-cli", "info", "0"))
        manager = self.start_sound_manager()
        self.add_output(SINK)
        self.wait_for_default_output(SINK)
        return server, manager

    def start_sound_manager(self):
        manager = self.start(["wireplumber"], log="wireplumber")
        self.wait("the sound session", lambda: re.search(r"Found .default. metadata",
                                                         self.run("pw-metadata")))
        return manager

    def wait_for_default_output(self, name):
        self.wait(f"the default output to be {name}",
                  lambda: f'"{name}"' in self.run("pw-metadata", "0", "default.audio.sink"))

    def remove_output(self, name):
        self.run("pw-cli", "destroy", name)
        self.wait("the output to go", lambda: f'"{name}"' not in self.run("pw-cli", "ls", "Node"))

    def add_output(self, name):
        self.run("pw-cli", "create-node", "adapter",
                 f"{{ factory.name=support.null-audio-sink node.name={name} "
                 "media.class=Audio/Sink object.linger=true audio.position=[FL FR] }")

    def start_tray(self):
        """A tray in which icons can be embedded; programs find it from then on."""
        tray = self.start(["trayer", "--edge", "top", "--align", "right", "--width", "10"])
        self.wait("the tray", lambda: self._is_owned("_NET_SYSTEM_TRAY_S0"))
        return tray

    def start_compositor(self):
        # Not black, so that pictures show translucency.
        self.run("xsetroot", "-solid", "#5d7389")
        return self.start(["picom", "--backend", "xrender", "--config", "/dev/null"], log="picom")

    def play(self, path):
        """Starts playing a sound file on the default output."""
        return self.start(["pw-play", path])

    def take_picture(self, path):
        self.run("import", "-window", "root", path)

    def windows(self):
        """The titles of the windows in view."""
        ids = self.run("xdotool", "search", "--onlyvisible", "--name", ".").split()
        return [self.run("xdotool", "getwindowname", i).strip() for i in ids]

    def wait_for_window(self, title):
        self.wait(f"the window “{title}”", lambda: title in self.windows())

    def key(self, key):
        self.run("xdotool", "key", key)

    def _is_owned(self, selection):
        """Whether a program owns a selection of the display. No command tells."""
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        display = ctypes.c_void_p(x11.XOpenDisplay(self.environment["DISPLAY"].encode()))
        if not display:
            return False
        atom = x11.XInternAtom(display, selection.encode(), False)
        owner = x11.XGetSelectionOwner(display, ctypes.c_ulong(atom))
        x11.XCloseDisplay(display)
        return owner != 0

    def _start_bus(self):
        bus = self.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                         stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        bus.stdout.close()

    def _start_display(self):
        reader, writer = os.pipe()
        self.display = self.start(["Xvfb", "-displayfd", writer, "-screen", "0",
                                   f"{self._screen}x24", "-nolisten", "tcp", "-noreset"],
                                  pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as number:
            self.environment["DISPLAY"] = f":{number.readline().strip()}"
        self.window_manager = self.start(["openbox"])
        self.wait("the window manager",
                  lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))


def end(process):
    """Ends a process: asked first, then killed."""
    if process.poll() is not None:
        return
    process.terminate()
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
