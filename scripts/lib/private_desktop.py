"""A private desktop for tests and demonstrations: folders, a session bus and a virtual display with a
window manager; PipeWire, a compositor and a tray on request. It ends every process that it started.

As a program, it starts one with a compositor, prints the name of the display (":7"), and ends when
its standard input is closed.
"""

import ctypes
import os
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SINK = "velun_private_output"
MOUTH = "test.mouth"
MICROPHONE = "test.microphone"
# A port that nobody listens on, so that no model is fetched from the network.
NOWHERE = "http://127.0.0.1:9"
POLL_INTERVAL = 0.02  # seconds
KEPT_VARIABLES = ("PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")


class PrivateDesktop:
    """A context manager. `environment` applies to processes started from then on."""

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
        """Starts a process that ends with the desktop. `log` names the log file for its output."""
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
        """The output of a command; empty if it failed."""
        done = subprocess.run([str(part) for part in command], env=self.environment, check=False,
                              text=True, timeout=30, capture_output=True)
        return done.stdout if done.returncode == 0 else ""

    def wait(self, what, condition, seconds=30):
        """Waits until `condition` returns a true value, and returns it. `what` names it in errors."""
        for _ in polling(seconds):
            if result := condition():
                return result
        raise AssertionError(f"Timed out after {seconds} s: {what}")

    def start_sound(self):
        """Starts PipeWire and WirePlumber with one output, the default. Returns both processes."""
        server = self.start(["pipewire"], log="pipewire")
        self.wait("PipeWire", lambda: self.run("pw-cli", "info", "0"))
        manager = self.start_sound_manager()
        self.add_output(SINK)
        self.wait_for_default_output(SINK)
        return server, manager

    def start_sound_manager(self):
        manager = self.start(["wireplumber"], log="wireplumber")
        self.wait("WirePlumber", lambda: re.search(r"Found .default. metadata",
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

    def add_microphone(self):
        """Starts the default microphone, which hears what is played to MOUTH. Returns the process."""
        microphone = self.start(
            ["pw-loopback", "--capture-props", f"media.class=Audio/Sink node.name={MOUTH}",
             "--playback-props", f"media.class=Audio/Source node.name={MICROPHONE}"],
            log="microphone")
        self.wait("the microphone", lambda: f'"{MICROPHONE}"' in self.run(
            "pw-metadata", "0", "default.audio.source"))
        return microphone

    def start_tray(self):
        """Starts a tray that embeds icons (XEmbed), and waits until programs find it."""
        tray = self.start(["trayer", "--edge", "top", "--align", "right", "--width", "10"])
        self.wait("the tray", lambda: self._is_owned("_NET_SYSTEM_TRAY_S0"))
        return tray

    def start_compositor(self):
        # A background that is not black shows translucency in pictures.
        self.run("xsetroot", "-solid", "#5d7389")
        compositor = self.start(["picom", "--backend", "xrender", "--config", "/dev/null"],
                                log="picom")
        self.wait("picom", lambda: self._is_owned("_NET_WM_CM_S0"))
        return compositor

    def play(self, path):
        """Starts playing a sound file on the default output. Returns the process."""
        return self.start(["pw-play", path])

    def speak(self, path):
        """Starts playing a sound file into the microphone. Returns the process."""
        return self.start(["pw-play", "--target", MOUTH, path])

    def take_picture(self, path):
        self.run("import", "-window", "root", path)

    def windows(self):
        """The titles of the visible windows."""
        ids = self.run("xdotool", "search", "--onlyvisible", "--name", ".").split()
        return [self.run("xdotool", "getwindowname", i).strip() for i in ids]

    def wait_for_window(self, title):
        self.wait(f"the window “{title}”", lambda: title in self.windows())

    def key(self, key):
        self.run("xdotool", "key", key)

    def _is_owned(self, selection):
        """Whether a program owns an X11 selection. No command line tool reports it."""
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
        self._start_manager()
        self.wait("the window manager",
                  lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))

    def _start_manager(self):
        self.window_manager = self.start(["openbox"])


def polling(seconds):
    """Yields every 20 ms until the time has passed, at least once."""
    end_time = time.monotonic() + seconds
    yield
    while time.monotonic() < end_time:
        time.sleep(POLL_INTERVAL)
        yield


def end(process):
    """Terminates a process, and kills it if it does not end within 5 s."""
    if process.poll() is not None:
        return
    process.terminate()
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def main():
    with PrivateDesktop() as desktop:
        desktop.start_compositor()
        print(desktop.environment["DISPLAY"], flush=True)
        sys.stdin.read()


if __name__ == "__main__":
    main()
