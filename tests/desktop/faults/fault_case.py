"""Base class of tests of faults: the real program captions, translates and saves."""

import json
import os
import unittest

from accessibility import Accessibility
from private_desktop import PrivateDesktop
from speech import synthetic
from velun_program import APPLICATION, VelunProgram

EXECUTABLE = os.environ["VELUN_PROGRAM"]
LANGUAGE = "es"
# Seconds. These tests do not measure the delay of recognition, and the machine may be busy.
PATIENCE = 60


class FaultCase(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(PrivateDesktop())
        self.program = VelunProgram(self.desktop, EXECUTABLE)
        self.program.write_preferences(autoSaveSessions=True, askBeforeDiscarding=False,
                                       translate=True, targetID=LANGUAGE,
                                       statusItemExplained=True)
        self.accessibility = self.enterContext(Accessibility(self.desktop))
        folder = self.desktop.root / "speech"
        folder.mkdir()
        self.phrase = next(synthetic(folder)).path

    def start_captions(self):
        self.sound_server, self.sound_manager = self.desktop.start_sound()
        self.launch()
        self.toggle_captions()
        self.program.wait_until_capturing()

    def toggle_captions(self):
        """Waits until the action is enabled: it is not while captions start or stop."""
        self.desktop.wait("captions to be switched", lambda: self.program.can("toggle-captions"),
                          PATIENCE)
        self.program.action("toggle-captions")

    def launch(self):
        self.program.launch()
        self.application = self.accessibility.application(APPLICATION)

    def shown_paragraphs(self):
        """The paragraphs of the panel: originals, translations and the draft."""
        shown = self.application.find("text", "Caption Text")
        return shown.text.splitlines() if shown else []

    def shown_status(self):
        """The panel's status line; may be empty."""
        label = self.application.find("notification", "Status")
        return label.description if label else ""

    def saved_lines(self):
        """Original and translation of each line of the only session file."""
        files = self.program.session_files()
        self.assertLessEqual(len(files), 1)
        if not files:
            return []
        return [(line["text"], line["translations"].get(LANGUAGE))
                for line in json.loads(files[0].read_text())["lines"]]

    def shown_lines(self):
        return [tuple(pair) for pair in zip(*[iter(self.shown_paragraphs())] * 2)]

    def speak(self):
        """Plays a phrase, waits until it is shown, translated and saved, and returns the saved lines."""
        before = len(self.saved_lines())
        self.say()
        return self.wait_for_lines(before + 1)

    def say(self):
        self.assertEqual(self.desktop.play(self.phrase).wait(PATIENCE), 0)

    def wait_for_lines(self, count):
        def finished():
            lines = self.saved_lines()
            return lines if len(lines) >= count and all(t for _, t in lines) else None
        try:
            lines = self.desktop.wait(f"{count} translated lines in the file", finished, PATIENCE)
        except AssertionError as error:
            raise AssertionError(f"{error}; there are {self.saved_lines()}, shown is "
                                 f"{self.shown_paragraphs()}, the status {self.shown_status()!r}; "
                                 f"{self.program.log()}") from None
        self.desktop.wait("them to be shown", lambda: self.shown_lines() == lines, PATIENCE)
        return lines

    def wait_for_status(self, *parts):
        """Waits until the status line contains all parts; without parts, until it is empty."""
        said = []

        def is_said():
            said[:] = [self.shown_status()]
            return all(part in said[0] for part in parts) if parts else not said[0]
        try:
            self.desktop.wait(f"the status to say {parts}", is_said, PATIENCE)
        except AssertionError as error:
            raise AssertionError(f"{error}; it says {said}; {self.program.log()}") from None

    def assert_kept(self, lines):
        """Checks that the file still begins with these lines."""
        self.assertEqual(self.saved_lines()[:len(lines)], lines)

    def quit(self):
        self.assertEqual(self.program.quit(), 0, self.program.log())
