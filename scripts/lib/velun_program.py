"""The real program on a private desktop, driven over the session bus."""

import json
import re
import signal

from private_desktop import MICROPHONE, SINK

APPLICATION = "app.velun.Velun"
OBJECT = "/app/velun/Velun"
LOG = "velun"


class VelunProgram:
    def __init__(self, desktop, executable):
        self._desktop = desktop
        self.executable = executable
        # A command that starts the program, with its arguments.
        self.prefix = []
        self.process = None
        self.preferences = desktop.home / "config" / APPLICATION / "preferences.json"
        self.sessions = desktop.home / "data" / "Velun" / "Sessions"

    def write_preferences(self, **values):
        self.preferences.parent.mkdir(parents=True, exist_ok=True)
        self.preferences.write_text(json.dumps(values))

    def read_preferences(self):
        return json.loads(self.preferences.read_text())

    def launch(self):
        """Starts the program and waits until it answers on the bus."""
        self.start()
        self._desktop.wait("the program", lambda: self.process.poll() is not None
                           or self.owns_name())
        assert self.process.poll() is None, self.log()
        try:
            self._desktop.wait("its actions", self.state)
        except AssertionError as error:
            raise AssertionError(f"{error}; status {self.process.poll()}: {self.log()}") from None

    def start(self):
        self.process = self._desktop.start([*self.prefix, self.executable], log=LOG)

    def log(self):
        return self._desktop.log_path(LOG).read_text(encoding="utf-8", errors="replace")

    def owns_name(self):
        return "true" in self._desktop.run(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
            "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus.NameHasOwner", APPLICATION)

    def call(self, method, *arguments):
        return self._desktop.run("gdbus", "call", "--session", "--dest", APPLICATION,
                                 "--object-path", OBJECT, "--method", method, *arguments)

    def action(self, name, parameter=None):
        parameters = "[]" if parameter is None else f"[<'{parameter}'>]"
        self.call("org.freedesktop.Application.ActivateAction", name, parameters, "{}")

    def open(self, *paths):
        """Opens session files as a file manager does."""
        uris = ", ".join(f"'{path.as_uri()}'" for path in paths)
        self.call("org.freedesktop.Application.Open", f"[{uris}]", "{}")

    def state(self):
        """The state of the actions by name."""
        text = self.call("org.freedesktop.DBus.Properties.Get", APPLICATION, "State")
        return {name: value == "true" if value in ("true", "false") else value.strip("'")
                for name, value in re.findall(r"'([\w-]+)': <([^>]*)>", text)}

    def can(self, action):
        """Whether the action is enabled."""
        actions = self.call("org.freedesktop.DBus.Properties.Get", APPLICATION, "Actions")
        return f"'{action}': <true>" in actions

    def wait_for_state(self, name, value):
        self._desktop.wait(f"{name} to be {value}", lambda: self.state().get(name) == value)

    def wait_until_capturing(self):
        """Waits until PipeWire has linked the program's capture to the output."""
        self._desktop.wait("the capture",
                           lambda: f"{SINK}:monitor" in self._desktop.run("pw-link", "-o", "-l")
                           and "Velun" in self._desktop.run("pw-link", "-l"))

    def wait_until_hearing(self):
        """Waits until PipeWire has linked the program's capture to the microphone."""
        self._desktop.wait("the capture of the microphone",
                           lambda: f"{MICROPHONE}:" in self._desktop.run("pw-link", "-o", "-l"))

    def session_files(self):
        return sorted(self.sessions.glob("*.json"))

    def quit(self):
        """Quits by the action; returns the exit status."""
        self.action("quit")
        return self.process.wait(30)

    def terminate(self, times=1):
        """Sends SIGTERM; returns the exit status."""
        for _ in range(times):
            self.process.send_signal(signal.SIGTERM)
        return self.process.wait(30)
