"""Faults of the disk on which sessions are saved."""

import os
import unittest
from pathlib import Path

from fault_case import FaultCase

NOT_SAVED = "Couldn’t save the session"
# In a mount namespace of its own, as the user who runs the test: no privileges are needed.
IN_NAMESPACE = ["unshare", "--user", "--map-root-user", "--mount", "sh", "-c"]
AS_USER = f'exec unshare --user --map-user={os.getuid()} --map-group={os.getgid()} "$1"'


class Storage(FaultCase):
    def run_with(self, mounting, path):
        """Runs a mount command in the program's own view of `path`."""
        # $1 is the executable, which comes last.
        self.program.prefix = [*IN_NAMESPACE, f'{mounting.format("$0")} && {AS_USER}', path]

    def inside(self, path):
        """The path as the program sees it."""
        return Path(f"/proc/{self.program.process.pid}/root{path}")

    def test_lines_are_saved_when_a_full_disk_has_room_again(self):
        data = self.desktop.home / "data"
        self.run_with('mount -t tmpfs -o size=1m,mode=0700 tmpfs "{}"', data)
        self.start_captions()
        sessions = self.program.sessions
        self.program.sessions = self.inside(sessions)
        lines = self.speak()
        ballast = self.inside(data) / "ballast"
        fill(ballast)
        self.say()
        self.wait_for_status(NOT_SAVED, "space")
        # The file is whole, and what could not be written is still shown.
        self.assertEqual(self.saved_lines(), lines)
        self.desktop.wait("the line to be shown",
                          lambda: len(self.shown_lines()) == len(lines) + 1)
        shown = self.shown_lines()
        ballast.unlink()
        self.say()
        self.wait_for_lines(len(lines) + 2)
        self.assert_kept(shown)
        self.wait_for_status()
        self.quit()

    def test_a_quit_with_a_full_disk_asks(self):
        """The program asks before it quits with an unsaved session."""
        data = self.desktop.home / "data"
        self.run_with('mount -t tmpfs -o size=1m,mode=0700 tmpfs "{}"', data)
        self.start_captions()
        self.program.sessions = self.inside(self.program.sessions)
        lines = self.speak()
        fill(self.inside(data) / "ballast")
        self.say()
        self.wait_for_status(NOT_SAVED, "space")
        self.program.action("quit")
        question = self.application.wait_for("dialog")
        self.assertEqual(self.saved_lines(), lines)
        (self.inside(data) / "ballast").unlink()
        # The tmpfs exists only while something uses it.
        disk = os.open(self.program.sessions, os.O_RDONLY | os.O_DIRECTORY)
        self.addCleanup(os.close, disk)
        self.program.sessions = Path(f"/proc/self/fd/{disk}")
        question.wait_for("push button", "Save Session").press()
        self.assertEqual(self.program.process.wait(30), 0, self.program.log())
        self.assertEqual(len(self.saved_lines()), len(lines) + 1)
        self.assert_kept(lines)

    def test_an_unwritable_home_is_reported(self):
        home = self.desktop.home
        self.run_with('mount --bind "{0}" "{0}" && mount -o remount,bind,ro "{0}"', home)
        self.start_captions()
        self.say()
        self.wait_for_status(NOT_SAVED)
        self.desktop.wait("the line to be shown", lambda: len(self.shown_lines()) == 1)
        self.say()
        self.desktop.wait("the next line to be shown", lambda: len(self.shown_lines()) == 2)
        self.assertEqual(self.saved_lines(), [])
        self.program.action("quit")
        question = self.application.wait_for("dialog")
        question.wait_for("push button", "Don’t Save").press()
        self.assertEqual(self.program.process.wait(30), 0, self.program.log())


def fill(path):
    """Fills the disk."""
    with open(path, "wb", buffering=0) as file:
        try:
            while file.write(bytes(4096)):
                pass
        except OSError:
            pass


if __name__ == "__main__":
    unittest.main()
