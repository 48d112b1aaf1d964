"""Base class of tests that control the real program through the accessibility bus."""

import json
import os
import unittest

from accessibility import Accessibility
from private_desktop import PrivateDesktop
from velun_program import APPLICATION, VelunProgram

SESSION = {
    "schemaVersion": 1, "id": "7C7F3A5E-3B0C-4B55-9F5D-0E2D6B1F0A11", "title": "Caption Session",
    "startedAt": "2026-03-04T07:30:45Z", "endedAt": "2026-03-04T07:31:45Z",
    "lines": [{"id": "B2A9E7A1-52C8-4D8F-8B8E-2E6D3F4C5A10", "time": "2026-03-04T07:31:00Z",
               "input": "computer", "sourceLanguage": "en_US", "text": "One line.",
               "translations": {}}]}


class ProgramCase(unittest.TestCase):
    """Each test has a desktop with a tray; without a tray a window would open at the start."""

    screen = "1280x800"

    def setUp(self):
        self.desktop = self.enterContext(PrivateDesktop(self.screen))
        self.desktop.start_tray()
        self.accessibility = self.enterContext(Accessibility(self.desktop))
        self.program = VelunProgram(self.desktop, os.environ["VELUN_PROGRAM"])
        self.application = None

    def launch(self):
        self.program.launch()
        self.application = self.accessibility.application(APPLICATION)

    def quit(self):
        self.assertEqual(self.program.quit(), 0, self.program.log())

    def save_session(self):
        """Puts a session with one line among the saved ones; returns its file."""
        self.program.sessions.mkdir(parents=True, exist_ok=True)
        file = self.program.sessions / "Velun-2026-03-04-073045-7C7F3A5E.json"
        file.write_text(json.dumps(SESSION))
        return file

    def open_window(self, action, title):
        """Opens a window by an action; returns its accessible object."""
        self.program.action(action)
        return self.window(title)

    def window(self, title):
        """Waits until a window of the program is active, and returns it."""
        window = self.application.wait_for(name=title)
        try:
            self.wait(f"“{title}” to be active", lambda: "active" in window.states)
        except AssertionError as error:
            raise AssertionError(f"{error}; there are {self.application.children}") from None
        return window

    @staticmethod
    def show_page(settings, title):
        """Shows a page of the settings window."""
        settings.wait_for("list item", title).select()

    def wait(self, what, condition):
        return self.desktop.wait(what, condition)

    def preference(self, key):
        """The stored value; none if it was never written."""
        if not self.program.preferences.exists():
            return None
        return self.program.read_preferences().get(key)

    def wait_for_preference(self, key, value):
        self.wait(f"the preference {key} to be {value!r}", lambda: self.preference(key) == value)
