"""Faults of PipeWire and its devices, and a machine that sleeps."""

import os
import signal
import time
import unittest

from fault_case import FaultCase
from private_desktop import SINK, end
from process_usage import family

NOT_RESPONDING = "The sound system is not responding. Captions will go on when it is back."
GIVEN_UP = ("Audio capture was interrupted. The sound server (PipeWire) did not come back. "
            "Start captions again once it works.")


class Sound(FaultCase):
    def end_sound(self):
        self.sound_server.kill()
        self.sound_server.wait()
        end(self.sound_manager)

    def test_captions_continue_when_pipewire_returns(self):
        self.start_captions()
        lines = self.speak()
        self.end_sound()
        self.wait_for_status(NOT_RESPONDING)
        self.assert_kept(lines)
        self.desktop.start_sound()
        self.wait_for_status()
        self.program.wait_until_capturing()
        self.assertEqual(self.program.state()["running"], True)
        self.speak()
        self.assert_kept(lines)
        self.quit()

    def test_captions_stop_when_pipewire_does_not_return(self):
        self.start_captions()
        lines = self.speak()
        self.end_sound()
        self.wait_for_status(GIVEN_UP)
        self.program.wait_for_state("running", False)
        self.assert_kept(lines)
        self.assertEqual(self.shown_lines(), lines)
        self.desktop.start_sound()
        self.toggle_captions()
        self.program.wait_until_capturing()
        self.speak()
        self.assert_kept(lines)
        self.quit()

    def test_captions_do_not_start_without_pipewire(self):
        self.launch()
        self.toggle_captions()
        self.wait_for_status("Audio start failed.")
        self.program.wait_for_state("running", False)
        self.desktop.start_sound()
        self.toggle_captions()
        self.program.wait_until_capturing()
        self.wait_for_status()
        self.speak()
        self.quit()

    def test_captions_follow_the_default_output(self):
        self.start_captions()
        lines = self.speak()
        self.desktop.remove_output(SINK)
        self.assertEqual(self.program.state()["running"], True)
        self.desktop.add_output("another_output")
        self.desktop.wait("the other output to be captured",
                          lambda: "another_output:monitor" in self.desktop.run("pw-link", "-o", "-l"))
        self.speak()
        self.assert_kept(lines)
        self.wait_for_status()
        self.quit()

    def test_captions_wait_for_a_chosen_output(self):
        self.program.write_preferences(**self.program.read_preferences(), output="headphones",
                                       outputName="Headphones")
        self.desktop.start_sound()
        self.launch()
        self.toggle_captions()
        missing = "“Headphones” is not connected. Captions will go on when it is back."
        self.wait_for_status(missing)
        self.desktop.add_output("headphones")
        self.wait_for_status()
        self.desktop.wait("it to be captured", lambda: "headphones:monitor" in self.desktop.run(
            "pw-link", "-o", "-l"))
        self.desktop.remove_output("headphones")
        self.wait_for_status(missing)
        self.assertEqual(self.program.state()["running"], True)
        self.application.wait_for("push button", "Use the Default Device").press()
        self.wait_for_status()
        self.program.wait_until_capturing()
        self.assertEqual(self.program.read_preferences()["output"], "")
        self.speak()
        self.quit()

    def test_captions_continue_when_the_session_manager_returns(self):
        self.start_captions()
        lines = self.speak()
        self.sound_manager.kill()
        self.sound_manager.wait()
        self.wait_for_status(NOT_RESPONDING)
        self.desktop.start_sound_manager()
        # The session manager recreates the outputs of sound cards; this one has none.
        self.desktop.remove_output(SINK)
        self.desktop.add_output(SINK)
        self.desktop.wait_for_default_output(SINK)
        self.wait_for_status()
        self.program.wait_until_capturing()
        self.speak()
        self.assert_kept(lines)
        self.quit()

    def test_captions_continue_after_a_sleep(self):
        """All processes stop for a while, in the middle of a phrase."""
        self.start_captions()
        lines = self.speak()
        player = self.desktop.play(self.phrase)
        self.desktop.wait("a draft", lambda: len(self.shown_paragraphs()) > 2 * len(lines))
        asleep = [player.pid, self.sound_manager.pid, self.sound_server.pid,
                  *family(self.program.process.pid)]
        self.send_all(signal.SIGSTOP, asleep)
        time.sleep(5)  # the fault itself: nothing runs meanwhile
        self.send_all(signal.SIGCONT, asleep)
        self.wait_for_lines(len(lines) + 1)
        self.speak()
        self.assert_kept(lines)
        self.assertEqual(self.program.state()["running"], True)
        self.quit()

    def send_all(self, number, processes):
        for process in processes:
            os.kill(process, number)


if __name__ == "__main__":
    unittest.main()
