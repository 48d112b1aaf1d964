"""Base class of tests that control the real program through the accessibility bus."""

import os
import unittest

from accessibility import Accessibility
from private_desktop import PrivateDesktop
from velun_program import APPLICATION, VelunProgram


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
