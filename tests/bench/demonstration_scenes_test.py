"""Tests the clips and the scores of the demonstration."""

import sys
import tempfile
import unittest
import wave
from pathlib import Path
from types import SimpleNamespace

SCRIPTS = Path(__file__).resolve().parent.parent.parent / "scripts"
sys.path[:0] = [str(SCRIPTS / "demonstration"), str(SCRIPTS / "lib")]

from scoring import scenes  # noqa: E402
from speech import human, phrase_ends  # noqa: E402


def text(kind, words):
    return SimpleNamespace(kind=kind, text=words)


class DemonstrationScenesTest(unittest.TestCase):
    def test_each_scene_is_scored_on_its_own(self):
        clips = [text("flite", "good morning"), text("librivox", "Mr. Hale is ill")]
        lines = [text("librivox", "Mister Hale was ill."), text("flite", "Good morning.")]
        self.assertEqual(list(scenes(lines, clips)), [
            "Synthetic voices: 2 of 2 words right, 0.0 % word errors",
            "Human readers: 3 of 4 words right, 25.0 % word errors"])

    def test_readers_can_be_played(self):
        with tempfile.TemporaryDirectory() as folder:
            clips = list(human(Path(folder)))
            self.assertGreater(sum(len(clip.text.split()) for clip in clips), 50)
            for clip in clips:
                with wave.open(str(clip.path)) as sound:
                    seconds = sound.getnframes() / sound.getframerate()
                self.assertGreater(phrase_ends(clip.path)[-1], seconds - 1)


if __name__ == "__main__":
    unittest.main()
