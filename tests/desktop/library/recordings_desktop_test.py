"""The window in which the real program captions recordings."""

import json
import subprocess
import unittest

from program_case import ProgramCase
from speech import say

TITLE = "Caption Recordings"
SAID = "Thank you for your time."


class Recordings(ProgramCase):
    def setUp(self):
        super().setUp()
        self.clip = say("thank you for your time", self.desktop.root / "clip.wav")
        self.video = self.desktop.root / "a talk.mkv"
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", "color=s=64x64:d=1",
                        "-i", self.clip, self.video], check=True)

    def buttons(self, window):
        return [each.name for each in window.find_all("push button") if each.is_showing]

    def saved(self):
        return [json.loads(path.read_text()) for path in self.program.session_files()]

    def test_recordings_become_sessions_and_broken_ones_say_why(self):
        broken = self.desktop.root / "broken.mp3"
        broken.write_text("no sound here")
        self.launch()
        self.program.open(broken, self.video)
        window = self.window(TITLE)
        window.wait_for("label", "“broken.mp3” isn’t a sound or video file, or it is damaged.")
        window.wait_for("label", "Done. The session is among the saved sessions.")
        self.assertIn("Try Again", self.buttons(window))
        session, = self.saved()
        self.assertEqual(session["title"], "a talk")
        self.assertEqual([line["text"] for line in session["lines"]], [SAID])
        window.wait_for("push button", "Show Session").press()
        library = self.window("Velun — Saved Sessions")
        self.wait("the line", lambda: any(SAID in text.text for text in library.find_all("text")))
        self.quit()

    def test_a_recording_is_cancelled(self):
        long = self.desktop.root / "long.wav"
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i",
                        "anullsrc=r=16000:cl=mono", "-t", "36000", long], check=True)
        self.launch()
        self.program.open(long)
        window = self.window(TITLE)
        window.wait_for("push button", "Cancel").press()
        self.wait("the empty list", lambda: self.buttons(window) == ["Add Recordings…"])
        self.assertEqual(self.saved(), [])
        self.quit()


if __name__ == "__main__":
    unittest.main()
