"""Quitting the real program with lines in every state, and every answer to its alert."""

import signal
import stat
import unittest

from spoken_case import QUESTION_BUTTONS, SpokenCase

QUESTION = "Save this session before quitting?"
ERROR = "Couldn’t Complete the Action"


class Quit(SpokenCase):
    def test_a_cancelled_quit_goes_on_and_two_ask_once(self):
        self.launch_with_line()
        said = self.transcript()
        self.program.action("quit")
        self.program.action("quit")
        question = self.wait_for_question(QUESTION)
        self.assertEqual([button.name for button in question.find_all("push button")],
                         list(QUESTION_BUTTONS))
        self.assertTrue(question.find("label", "The 1 sentence in this session hasn’t been saved. "
                                               "If you don’t save, it’ll be lost."))
        # Other commands are ignored while the question is open.
        self.program.action("show-settings")
        self.program.action("toggle-captions")
        self.answer(QUESTION, "Cancel")
        self.assert_goes_on(said)

        for key in ("Escape", "alt+F4"):
            self.program.action("quit")
            self.press_key_in_question(key)
            self.assert_goes_on(said)

        self.program.action("quit")
        self.answer(QUESTION, "Don’t Save")
        self.assert_ends()
        self.assertEqual(self.program.session_files(), [])

    def test_saving_first_in_korean(self):
        self.launch_with_line(language="ko")
        self.program.action("quit")
        title = "종료하기 전에 이 세션을 저장할까요?"
        question = self.wait_for_question(title)
        self.assertEqual([button.name for button in question.find_all("push button")],
                         ["세션 저장", "저장하지 않음", "취소"])
        self.assertTrue(question.find("label", "현재 세션의 1문장은 아직 저장되지 않았습니다. "
                                               "저장하지 않으면 이 기록은 사라집니다."))
        # The first button is the default one.
        self.press_key_in_question("Return", title)
        self.assert_ends()
        session, = self.saved_sessions()
        self.assertEqual(len(session["lines"]), 1)
        self.assertIn("endedAt", session)
        file, = self.program.session_files()
        self.assertEqual(stat.S_IMODE(file.stat().st_mode), 0o600)

    def test_a_session_in_saving_mode_is_written_whole_without_a_question(self):
        self.launch_with_line()
        self.program.action("save-session")
        self.desktop.wait("the file", self.program.session_files)
        self.desktop.play(self.clip)
        self.desktop.wait("the second line", lambda: len(self.saved_sessions()[0]["lines"]) == 2,
                          seconds=60)
        self.program.action("quit")
        self.assert_ends()
        session, = self.saved_sessions()
        self.assertEqual(len(session["lines"]), 2)
        self.assertIn("endedAt", session)

    def test_without_asking_unsaved_lines_go(self):
        self.launch_with_line(askBeforeDiscarding=False)
        self.program.action("quit")
        self.assert_ends()
        self.assertEqual(self.program.session_files(), [])

    def test_a_save_that_fails_cancels_the_quit(self):
        self.launch_with_line()
        self.make_saving_fail()
        self.program.action("quit")
        self.answer(QUESTION, "Save Session")
        error = self.wait_for_question(ERROR)
        self.assertIn("Couldn’t save the session: ", "".join(
            label.name for label in error.find_all("label")))
        self.answer(ERROR, "OK")
        self.program.wait_for_state("running", True)
        self.assertIn("Couldn’t save the session: ", self.status())
        # The question comes although the settings turn it off, because the write has failed.
        self.program.action("quit")
        self.answer(QUESTION, "Don’t Save")
        self.assert_ends()

    def test_a_signal_while_it_asks_changes_nothing_and_a_second_one_ends_it(self):
        self.launch_with_line()
        self.program.action("quit")
        self.wait_for_question(QUESTION)
        self.program.process.send_signal(signal.SIGTERM)
        said = self.transcript()
        self.answer(QUESTION, "Cancel")
        self.assert_goes_on(said)

        # A single signal asks like the menu item.
        self.program.process.send_signal(signal.SIGINT)
        self.wait_for_question(QUESTION)
        self.program.process.send_signal(signal.SIGTERM)
        self.assert_ends()
        self.assertEqual(self.program.session_files(), [])

    def test_two_signals_leave_a_saved_session_whole(self):
        self.launch_with_line(autoSaveSessions=True)
        self.assertEqual(self.program.terminate(times=2), 0, self.program.log())
        session, = self.saved_sessions()
        self.assertEqual(len(session["lines"]), 1)

    def test_two_signals_in_mid_speech_leave_the_finished_lines(self):
        self.launch_with_line(autoSaveSessions=True)
        shown = self.transcript()
        self.desktop.play(self.clip)
        self.desktop.wait("a draft", lambda: self.transcript() != shown)
        self.assertEqual(self.program.terminate(times=2), 0, self.program.log())
        session, = self.saved_sessions()
        self.assertGreaterEqual(len(session["lines"]), 1)

    def press_key_in_question(self, key, title=QUESTION):
        question = self.wait_for_question(title)
        self.desktop.wait("the keyboard", lambda: "active" in question.states)
        self.desktop.key(key)

    def assert_goes_on(self, said):
        self.program.wait_for_state("running", True)
        self.assert_handles_events()
        self.assertEqual(self.questions(), [])
        self.assertNotIn("Velun Settings", self.desktop.windows())
        self.assertEqual(self.transcript(), said)


if __name__ == "__main__":
    unittest.main()
