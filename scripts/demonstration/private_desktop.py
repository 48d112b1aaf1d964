"""A desktop that nobody sees: its own session bus, virtual display with a window manager and a
compositor, and sound server with one output. Ends everything that it started.
"""

import json
import os
import re
import subprocess
import time

APPLICATION = "app.velun.Velun"
SINK = "velun_demonstration"


class PrivateDesktop:
    def __init__(self, folder):
        self._folder = folder
        self._processes = []
        self._program = None
        home = folder / "home"
        runtime = folder / "run"
        for path in (home, runtime):
            path.mkdir(mode=0o700)
        self.sessions_folder = home / "data" / "Velun" / "Sessions"
        self._preferences = home / "config" / APPLICATION / "preferences.json"
        kept = {key: os.environ[key] for key in ("PATH", "LANG", "LC_ALL", "TZ")
                if key in os.environ}
        self._environment = kept | {
            "HOME": str(home),
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_DATA_HOME": str(home / "data"),
            "XDG_CONFIG_HOME": str(home / "config"),
            "XDG_CACHE_HOME": str(home / "cache"),
            "XDG_STATE_HOME": str(home / "state"),
        }

    def __enter__(self):
        try:
            self._start_bus()
            self._start_display()
            self._start_sound()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            process.terminate()
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()

    def write_preferences(self, preferences):
        self._preferences.parent.mkdir(parents=True)
        self._preferences.write_text(json.dumps(preferences))

    def start_program(self, program):
        self._program = self._start([program], log="velun")
        self._wait("the program's D-Bus name", lambda: self._owns_name())

    def activate_action(self, name):
        self._run(["gdbus", "call", "--session", "--dest", APPLICATION,
                   "--object-path", "/app/velun/Velun",
                   "--method", "org.freedesktop.Application.ActivateAction",
                   name, "[]", "{}"])

    def wait_until_capturing(self):
        """Until the program's capture is linked to the output."""
        self._wait("the capture", lambda: f"{SINK}:monitor" in self._run(["pw-link", "-o", "-l"])
                   and "Velun" in self._run(["pw-link", "-l"]), seconds=20)

    def play(self, path):
        return subprocess.Popen(["pw-play", str(path)], env=self._environment)

    def take_picture(self, path):
        self._run(["import", "-window", "root", str(path)])

    def quit_program(self):
        self.activate_action("quit")
        code = self._program.wait(20)
        self._processes.remove(self._program)
        if code != 0:
            raise RuntimeError(f"The program ended with {code}: {self._log('velun')}")

    def _owns_name(self):
        if self._program.poll() is not None:
            raise RuntimeError(f"The program ended: {self._log('velun')}")
        return "true" in self._run(["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                                    "--object-path", "/org/freedesktop/DBus", "--method",
                                    "org.freedesktop.DBus.NameHasOwner", APPLICATION])

    def _start_bus(self):
        process = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--print-address=1"],
            env=self._environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self._processes.append(process)
        self._environment["DBUS_SESSION_BUS_ADDRESS"] = process.stdout.readline().strip()

    def _start_display(self):
        reader, writer = os.pipe()
        self._processes.append(subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x800x24",
             "-nolisten", "tcp", "-noreset"],
            env=self._environment, pass_fds=[writer], stderr=subprocess.DEVNULL))
        os.close(writer)
        with os.fdopen(reader) as number:
            self._environment["DISPLAY"] = f":{number.readline().strip()}"
        self._start(["openbox"], log="openbox")
        self._wait("the window manager", lambda: "window id" in self._run(
            ["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]))
        # Not black, so that the picture shows the panel's translucency.
        self._run(["xsetroot", "-solid", "#5d7389"])
        self._start(["trayer", "--edge", "top", "--align", "right"], log="tray")
        self._start(["picom", "--backend", "xrender", "--config", "/dev/null"], log="picom")

    def _start_sound(self):
        self._start(["pipewire"], log="pipewire")
        self._wait("the sound server", lambda: self._run(["pw-cli", "info", "0"], required=False))
        self._start(["wireplumber"], log="wireplumber")
        self._wait("the sound session", lambda: re.search(
            r'Found .default. metadata', self._run(["pw-metadata"], required=False)))
        self._run(["pw-cli", "create-node", "adapter",
                   "{ factory.name=support.null-audio-sink node.name=" + SINK +
                   " media.class=Audio/Sink object.linger=true audio.position=[FL FR] }"])
        self._wait("the sound output", lambda: f'"{SINK}"' in self._run(
            ["pw-metadata", "0", "default.audio.sink"], required=False))

    def _start(self, command, log):
        with open(self._folder / f"{log}.log", "w", encoding="utf-8") as output:
            process = subprocess.Popen([str(part) for part in command], env=self._environment,
                                       stdout=output, stderr=subprocess.STDOUT)
        self._processes.append(process)
        return process

    def _run(self, command, required=True):
        done = subprocess.run(command, env=self._environment, check=False, text=True,
                              capture_output=True, timeout=20)
        if required and done.returncode != 0:
            raise RuntimeError(f"{' '.join(command)}: {done.stderr.strip()}")
        return done.stdout if done.returncode == 0 else ""

    def _wait(self, what, condition, seconds=15):
        end = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > end:
                raise RuntimeError(f"Waited {seconds} s in vain for {what}")
            time.sleep(0.05)

    def _log(self, name):
        return (self._folder / f"{name}.log").read_text(encoding="utf-8", errors="replace")
