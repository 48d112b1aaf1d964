"""`velun captions --input both`: the real program captions a player and a microphone at once."""

import json
import os
import queue
import signal
import subprocess
import threading
import unittest

from private_desktop import PrivateDesktop, end
from speech import say

EXECUTABLE = os.environ["VELUN_PROGRAM"]
PLAYED = "please open the window because it is very warm in this room"
SPOKEN = "every summer the children of the village swim near the old bridge"
WAIT = 90  # seconds


class BothInputs(unittest.TestCase):
    """A loopback is the microphone: what is played to its one side is spoken into the other."""

    def setUp(self):
        self.desktop = self.enterContext(PrivateDesktop())
        self.desktop.start_sound()
        self.played = say(PLAYED, self.desktop.root / "played.wav", voice="slt")
        self.spoken = say(SPOKEN, self.desktop.root / "spoken.wav", voice="rms")
        self.microphone = self.desktop.add_microphone()
        self.lines = queue.Queue()

    def start_captions(self):
        self.process = self.desktop.start(
            [EXECUTABLE, "captions", "--input", "both", "--format", "json"],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(self.process.communicate)
        self.addCleanup(self.process.kill)
        threading.Thread(target=self.read, daemon=True).start()

    def read(self):
        for line in self.process.stdout:
            self.lines.put(json.loads(line))

    def next_line(self):
        try:
            return self.lines.get(timeout=WAIT)
        except queue.Empty:
            self.fail("no line")

    def say_both(self):
        for player in (self.desktop.play(self.played), self.desktop.speak(self.spoken)):
            player.wait(WAIT)

    def wait_until_captioned(self):
        """Says both sentences until a line of each has come: the first may come too early."""
        missing = {"computer", "microphone"}
        while missing:
            self.say_both()
            while missing:
                try:
                    missing.discard(self.lines.get(timeout=8)["input"])
                except queue.Empty:
                    break

    def stop(self):
        """It ends with its last words."""
        self.process.send_signal(signal.SIGINT)
        self.assertEqual(self.process.wait(WAIT), 0)

    def test_each_line_has_its_input(self):
        self.start_captions()
        self.wait_until_captioned()
        while not self.lines.empty():
            self.lines.get()
        self.say_both()
        texts = {"computer": "", "microphone": ""}
        while "window" not in texts["computer"] or "children" not in texts["microphone"]:
            line = self.next_line()
            texts[line["input"]] += line["text"]
        self.assertNotIn("children", texts["computer"])
        self.assertNotIn("window", texts["microphone"])
        self.stop()

    def test_the_computer_is_captioned_without_the_microphone(self):
        self.start_captions()
        self.wait_until_captioned()
        end(self.microphone)
        while not self.lines.empty():
            self.lines.get()
        self.desktop.play(self.played).wait(WAIT)
        while self.next_line()["input"] != "computer":
            pass
        self.stop()


if __name__ == "__main__":
    unittest.main()
