"""New sessions in the real program, with every answer to its alert."""

import unittest

from spoken_case import SpokenCase

QUESTION = "Save this session before starting a new one?"
ERROR = "Couldn’t Complete the Action"
SAVED = "Caption Session, 1 sentence"


class NewSession(SpokenCase):
    def test_an_empty_one_is_replaced_without_a_question(self):
        self.launch()
        self.program.action("new-session")
        self.program.wait_for_state("toggle-panel", True)
        self.assertEqual(self.questions(), [])
        self.assertEqual(self.program.state()["running"], False)

    def test_every_answer(self):
        self.launch_with_line()
        said = self.transcript()
        with self.subTest("cancelled, the same session goes on"):
            self.program.action("new-session")
            self.answer(QUESTION, "Cancel")
            self.program.wait_for_state("running", True)
            self.assertEqual(self.transcript(), said)
        with self.subTest("saved first"):
            self.program.action("show-history")
            self.desktop.wait_for_window("Velun — Saved Sessions")
            self.assertFalse(self.application.find("list item", SAVED))
            self.program.action("new-session")
            self.answer(QUESTION, "Save Session")
            self.wait_for_fresh_session()
            session, = self.saved_sessions()
            self.assertIn("endedAt", session)
            # The open window of saved sessions lists it.
            self.desktop.wait("the list", lambda: self.application.find("list item", SAVED))
        with self.subTest("discarded"):
            self.speak()
            self.program.action("new-session")
            self.answer(QUESTION, "Don’t Save")
            self.wait_for_fresh_session()
            self.assertEqual(len(self.saved_sessions()), 1)
        with self.subTest("being saved, it is finished without a question"):
            self.speak()
            self.program.action("save-session")
            self.program.action("new-session")
            self.wait_for_fresh_session()
            self.assertEqual(len(self.saved_sessions()), 2)
            self.assertTrue(all("endedAt" in session for session in self.saved_sessions()))
        with self.subTest("and the new one is not saved by itself"):
            self.speak()
            self.assertEqual(len(self.saved_sessions()), 2)
        with self.subTest("a save that fails cancels too"):
            said = self.transcript()
            self.make_saving_fail()
            self.program.action("new-session")
            self.answer(QUESTION, "Save Session")
            self.answer(ERROR, "OK")
            self.program.wait_for_state("running", True)
            self.assertEqual(self.transcript(), said)
            # Still in saving mode, so it saves once it can.
            self.data.unlink()
            self.program.action("new-session")
            self.wait_for_fresh_session()
            self.assertEqual(len(self.saved_sessions()), 1)

    def wait_for_fresh_session(self):
        self.desktop.wait("an empty session", lambda: not self.program.can("save-session"))
        self.program.wait_for_state("running", True)
        self.program.wait_until_capturing()
        self.assertEqual(self.transcript(), "")
        self.assertEqual(self.questions(), [])


if __name__ == "__main__":
    unittest.main()
