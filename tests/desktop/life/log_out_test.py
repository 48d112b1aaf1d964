"""Logging out, with a session manager that asks the real program to end."""

import unittest
from pathlib import Path

from spoken_case import SpokenCase

HERE = Path(__file__).resolve().parent
QUESTION = "Save this session before quitting?"


class LogOut(SpokenCase):
    def setUp(self):
        super().setUp()
        self.manager = self.desktop.start(["/usr/bin/python3", "-B", HERE / "session_manager.py"],
                                          log="session_manager", stdin=-1, stdout=-1, text=True, bufsize=1)
        self.addCleanup(self.manager.stdout.close)
        self.addCleanup(self.manager.stdin.close)
        self.desktop.environment["SESSION_MANAGER"] = self.next_event()

    def launch(self, **preferences):
        super().launch(**preferences)
        self.expect("ready")

    def log_out_saving(self):
        """Logs out, saves the session when asked, and returns it."""
        self.log_out()
        self.expect("asks")
        self.answer(QUESTION, "Save Session")
        self.expect("saved", "gone")
        self.assert_ends()
        session, = self.saved_sessions()
        return session

    def test_without_lines_nothing_is_asked(self):
        self.launch()
        self.log_out()
        self.expect("asks", "saved", "gone")
        self.assert_ends()

    def test_the_user_is_asked_and_may_cancel(self):
        self.launch_with_line()
        said = self.transcript()
        self.log_out()
        self.expect("asks")
        self.answer(QUESTION, "Cancel")
        self.expect("cancelled")
        self.program.wait_for_state("running", True)
        self.assertEqual(self.transcript(), said)

        session = self.log_out_saving()
        self.assertIn("endedAt", session)

    def test_a_question_that_is_open_already_comes_first(self):
        self.launch_with_line()
        self.program.action("quit")
        self.wait_for_question(QUESTION)
        self.log_out()
        self.expect("asks", "cancelled")
        self.answer(QUESTION, "Don’t Save")
        self.expect("gone")
        self.assert_ends()
        self.assertEqual(self.saved_sessions(), [])

    def test_where_nothing_may_be_asked_a_saved_session_is_whole(self):
        self.launch_with_line(autoSaveSessions=True)
        self.log_out("now")
        self.expect("saved", "gone")
        self.assert_ends()
        session, = self.saved_sessions()
        self.assertEqual(len(session["lines"]), 1)
        self.assertIn("endedAt", session)

    def test_where_nothing_may_be_asked_unsaved_lines_go(self):
        self.launch_with_line()
        self.log_out("now")
        self.expect("saved", "gone")
        self.assert_ends()
        self.assertEqual(self.saved_sessions(), [])

    def test_another_program_may_cancel(self):
        self.launch_with_line()
        said = self.transcript()
        self.log_out("with others")
        self.expect("asks")
        self.answer(QUESTION, "Don’t Save")
        self.expect("saved")
        self.program.wait_for_state("running", False)
        self.tell("cancel")
        self.program.wait_for_state("running", True)
        self.assertEqual(self.transcript(), said)

        session = self.log_out_saving()
        self.assertEqual(len(session["lines"]), 1)

    def test_captions_go_on_while_another_program_asks(self):
        self.launch_with_line()
        self.log_out("with others")
        self.expect("asks")
        self.answer(QUESTION, "Save Session")
        self.expect("saved")
        self.program.wait_for_state("running", False)
        self.program.wait_for_state("running", True)
        self.tell("end")
        self.expect("gone")
        self.assert_ends()
        session, = self.saved_sessions()
        self.assertIn("endedAt", session)

    def log_out(self, *when):
        self.tell(" ".join(["log", "out", *when]))

    def tell(self, command):
        self.manager.stdin.write(command + "\n")

    def next_event(self):
        return self.manager.stdout.readline().strip()

    def expect(self, *events):
        self.assertEqual([self.next_event() for _ in events], list(events))


if __name__ == "__main__":
    unittest.main()
