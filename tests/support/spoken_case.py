"""Base classes of tests in which the real program captions speech."""

import json
import os
import shutil
import unittest

from accessibility import Accessibility
from private_desktop import PrivateDesktop, end
from speech import say
from trays import EmbeddedTray
from velun_program import APPLICATION, VelunProgram

EXECUTABLE = os.environ["VELUN_PROGRAM"]
QUESTION_BUTTONS = ("Save Session", "Don’t Save", "Cancel")


class PlainCase(unittest.TestCase):
    """Each test has its own desktop."""

    def setUp(self):
        self.desktop = self.enterContext(PrivateDesktop())
        self.program = VelunProgram(self.desktop, EXECUTABLE)

    def start_other_window(self, title, *options, log):
        """Shows a window of xev, which writes its events to the log. On a busy machine xev sometimes
        starts without a visible window; then it starts anew.
        """
        for _ in range(3):
            xev = self.desktop.start(["stdbuf", "-oL", "xev", "-name", title, *options], log=log)
            try:
                return self.desktop.wait(title, lambda: title in self.desktop.windows(), 12)
            except AssertionError:
                end(xev)
        self.fail("xev has no window")

    def quit(self):
        self.assertEqual(self.program.quit(), 0, self.program.log())
        self.assertFalse(self.program.owns_name())


class SpokenCase(unittest.TestCase):
    """The tests of a class share a desktop with sound and assistive technology; each has the
    program from its very beginning.
    """

    TRAY = EmbeddedTray
    SOUND = True

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(PrivateDesktop())
        cls.server, _ = cls.desktop.start_sound() if cls.SOUND else (None, None)
        cls.accessibility = cls.enterClassContext(Accessibility(cls.desktop))
        cls.tray = cls.TRAY(cls.desktop)
        cls.addClassCleanup(lambda: cls.tray.close())
        cls.clip = say("thank you for your time", cls.desktop.root / "clip.wav")

    def setUp(self):
        self.program = VelunProgram(self.desktop, EXECUTABLE)
        for folder in (self.program.preferences.parent, self.data):
            if folder.is_dir():
                shutil.rmtree(folder)
            else:
                folder.unlink(missing_ok=True)
        self.addCleanup(lambda: self.program.process and end(self.program.process))

    @property
    def data(self):
        """The folder of the session files."""
        return self.program.sessions.parent

    def launch(self, **preferences):
        self.program.write_preferences(**({"translate": False} | preferences))
        self.program.launch()
        self.application = self.accessibility.application(APPLICATION)

    def start_captions(self):
        self.program.action("toggle-captions")
        self.program.wait_for_state("running", True)
        self.program.wait_until_capturing()

    def stop_captions(self):
        self.program.action("toggle-captions")
        self.program.wait_for_state("running", False)
        self.desktop.wait("the end of the stop", lambda: self.program.can("toggle-captions"))

    def speak(self):
        """Plays a phrase and waits for its line."""
        before = self.transcript()
        self.desktop.play(self.clip)
        self.desktop.wait("a line", lambda: self.program.can("save-session")
                          and self.transcript() != before, seconds=60)

    def launch_with_line(self, **preferences):
        self.launch(**preferences)
        self.start_captions()
        self.speak()

    def transcript(self):
        shown = (self.application.find("text", "Caption Text")
                 or self.application.find("text", "자막 본문"))
        return shown.text if shown else ""

    def status(self):
        return self.application.find("notification", "Status").description

    def questions(self):
        """The visible alerts."""
        return [dialog for dialog in self.application.find_all("dialog") if dialog.is_showing]

    def wait_for_question(self, title):
        return self.application.wait_for("dialog", title)

    def answer(self, title, button):
        """Waits for an alert and presses a button of it."""
        self.wait_for_question(title).wait_for("push button", button).press()
        self.desktop.wait("the answer to be taken",
                          lambda: title not in [dialog.name for dialog in self.questions()])

    def saved_sessions(self):
        return [json.loads(path.read_text()) for path in self.program.session_files()]

    def make_saving_fail(self):
        """Replaces the folder by a file: not even root can write below a file."""
        shutil.rmtree(self.data, ignore_errors=True)
        self.data.write_text("")

    def assert_ends(self):
        self.assertEqual(self.program.process.wait(30), 0, self.program.log())

    def assert_handles_events(self):
        """Returns when the program has handled all earlier requests."""
        before = self.program.state()["toggle-keep-on-top"]
        self.program.action("toggle-keep-on-top")
        self.program.wait_for_state("toggle-keep-on-top", not before)


