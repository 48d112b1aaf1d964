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
from speech import TELEPHONE, human, phrase_ends, telephone, transcript  # noqa: E402


def text(kind, words):
    return SimpleNamespace(kind=kind, text=words)


class DemonstrationScenesTest(unittest.TestCase):
    def test_each_scene_is_scored_on_its_own(self):
        clips = [text("flite", "good morning"), text("librivox", "Mr. Hale is ill")]
        clips.append(text("telephone", "you know who cares"))
        lines = [text("telephone", "You know. Who cares?"), text("librivox", "Mister Hale was ill."), text("flite", "Good morning.")]
        self.assertEqual(list(scenes(lines, clips)), [
            "Synthetic voices: 2 of 2 words right, 0.0 % word errors",
            "Friends on the telephone: 4 of 4 words right, 0.0 % word errors",
            "Human readers: 3 of 4 words right, 25.0 % word errors"])

    def test_scene_without_clips_is_not_scored(self):
        self.assertEqual(len(list(scenes([], [text("flite", "good morning")]))), 1)

    def test_transcript_has_only_the_words(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "talk.trs"
            path.write_text('<?xml version="1.0"?><Trans><Turn><Sync time="0"/>\n{inhale} It\'s '
                            '((so)) "late", {laugh}</Turn><Turn>I just- know.</Turn></Trans>')
            self.assertEqual(transcript(path), "it's so late i just know")

    @unittest.skipUnless(TELEPHONE.exists(), "the package transcriber is not installed")
    def test_telephone_talk_can_be_played(self):
        with tempfile.TemporaryDirectory() as folder:
            clip, = telephone(Path(folder))
            self.assertGreater(len(clip.text.split()), 80)
            with wave.open(str(clip.path)) as sound:
                self.assertGreater(sound.getnframes() / sound.getframerate(), 20)

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
