"""A desktop for one test: a session bus, a virtual display with a window manager, folders of its
own; a tray of either kind and a sound server on request. Ends everything that it started.
"""

import json
import os
import re
import signal
import subprocess
import tempfile
import time
from pathlib import Path

APPLICATION = "app.velun.Velun"
OBJECT = "/app/velun/Velun"
HERE = Path(__file__).resolve().parent
PROGRAM = os.environ["VELUN_PROGRAM"]


class Desktop:
    def __init__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="velun-life.")
        self.root = Path(self._folder.name)
        self.home = self.root / "home"
        self._processes = []
        self.environment = {k: os.environ[k] for k in ("PATH", "ASAN_OPTIONS", "LSAN_OPTIONS")
                            if k in os.environ}
        self.environment |= {"HOME": str(self.home), "LC_ALL": "C.UTF-8", "TZ": "UTC",
                             "XDG_RUNTIME_DIR": str(self.root / "run")}
        for name in ("DATA", "CONFIG", "CACHE", "STATE"):
            path = self.home / name.lower()
            path.mkdir(parents=True, mode=0o700)
            self.environment[f"XDG_{name}_HOME"] = str(path)
        (self.root / "run").mkdir(mode=0o700)
        self.preferences = self.home / "config" / APPLICATION / "preferences.json"
        self.sessions = self.home / "data" / "Velun" / "Sessions"

    def __enter__(self):
        try:
            self._begin()
        except BaseException:
            self.__exit__()
            raise
        return self

    def _begin(self):
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                               env=self.environment, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, text=True)
        self._processes.append(bus)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        bus.stdout.close()
        reader, writer = os.pipe()
        self._processes.append(subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x800x24",
             "-nolisten", "tcp", "-noreset"],
            env=self.environment, pass_fds=[writer], stderr=subprocess.DEVNULL))
        os.close(writer)
        with os.fdopen(reader) as number:
            self.environment["DISPLAY"] = f":{number.readline().strip()}"
        self.start(["openbox"])
        self.wait("the window manager",
                  lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))

    def __exit__(self, *_):
        for process in reversed(self._processes):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(5)
                except subprocess.TimeoutExpired:
                    process.kill()
                    process.wait()
        self._folder.cleanup()

    def start(self, command, **options):
        options = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL} | options
        process = subprocess.Popen(command, env=self.environment, **options)
        self._processes.append(process)
        return process

    def run(self, *command):
        return subprocess.run(command, env=self.environment, check=False, text=True, timeout=20,
                              capture_output=True).stdout

    def wait(self, what, condition, seconds=20):
        end = time.monotonic() + seconds
        while not (result := condition()):
            if time.monotonic() > end:
                raise AssertionError(f"Waited in vain for {what}")
            time.sleep(0.02)
        return result

    def write_preferences(self, **values):
        self.preferences.parent.mkdir(parents=True, exist_ok=True)
        self.preferences.write_text(json.dumps(values))

    def launch(self):
        """Starts the program and waits until it can be called."""
        with open(self.root / "log", "w", encoding="utf-8") as log:
            program = self.start([PROGRAM], stderr=log)
        self.wait("the program", lambda: program.poll() is not None or self.owns_name())
        assert program.poll() is None, self.log()
        self.wait("its actions", lambda: self.state())
        return program

    def log(self):
        return (self.root / "log").read_text()

    def owns_name(self):
        return "true" in self.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                                  "--object-path", "/org/freedesktop/DBus", "--method",
                                  "org.freedesktop.DBus.NameHasOwner", APPLICATION)

    def call(self, method, *arguments):
        return self.run("gdbus", "call", "--session", "--dest", APPLICATION, "--object-path",
                        OBJECT, "--method", method, *arguments)

    def action(self, name, parameter=None):
        parameters = "[]" if parameter is None else f"[<'{parameter}'>]"
        self.call("org.freedesktop.Application.ActivateAction", name, parameters, "{}")

    def state(self):
        """The state of the actions by name."""
        text = self.call("org.freedesktop.DBus.Properties.Get", APPLICATION, "State")
        return {name: value == "true" if value in ("true", "false") else value.strip("'")
                for name, value in re.findall(r"'([\w-]+)': <([^>]*)>", text)}

    def wait_for_state(self, name, value):
        self.wait(f"{name} to be {value}", lambda: self.state().get(name) == value)

    def windows(self):
        """The titles of the windows in view."""
        ids = self.run("xdotool", "search", "--onlyvisible", "--name", ".").split()
        return [self.run("xdotool", "getwindowname", i).strip() for i in ids]

    def wait_for_window(self, title):
        self.wait(f"the window “{title}”", lambda: title in self.windows())

    def key(self, key):
        self.run("xdotool", "key", key)

    def terminate(self, program, times=1):
        for _ in range(times):
            program.send_signal(signal.SIGTERM)
        return program.wait(20)
