"""Faults of helper programs and model files."""

import os
import signal
import unittest
from pathlib import Path

import tiny_model
from fault_case import PATIENCE, FaultCase
from process_usage import children


def is_recognizer(process):
    return Path(f"/proc/{process}/comm").read_text().startswith("velun-recognize")


class Translator(FaultCase):
    def test_a_translator_killed_between_lines_is_restarted(self):
        self.start_captions()
        lines = self.speak()
        for stage in self.stages():
            os.kill(stage, signal.SIGKILL)
        self.speak()
        self.assert_kept(lines)
        self.wait_for_status()
        self.quit()

    def test_a_translator_killed_during_a_line_is_restarted(self):
        self.start_captions()
        lines = self.speak()
        stages = self.stages()
        # The stopped process accepts the line and never replies.
        os.kill(stages[-1], signal.SIGSTOP)
        self.say()
        self.desktop.wait("the line", lambda: len(self.saved_lines()) > len(lines), PATIENCE)
        self.assertIsNone(self.saved_lines()[-1][1])
        os.kill(stages[-1], signal.SIGKILL)
        self.wait_for_lines(len(lines) + 1)
        self.assert_kept(lines)
        self.wait_for_status()
        self.quit()

    def stages(self):
        return [child for child in children(self.program.process.pid) if not is_recognizer(child)]


class Punctuation(FaultCase):
    """The helper that writes sentences, beside that of the built-in recognizer."""

    def helper(self):
        def find():
            return [child for child in children(self.program.process.pid) if is_recognizer(child)
                    and "libsherpa-onnx" in Path(f"/proc/{child}/maps").read_text()]
        return self.desktop.wait("the helper", find)[0]

    def test_a_helper_that_hangs_costs_only_the_marks(self):
        self.start_captions()
        lines = self.speak()
        self.assertTrue(lines[-1][0].endswith("."), lines)
        os.kill(self.helper(), signal.SIGSTOP)
        self.say()
        self.wait_for_status("Captions have no punctuation", "does not respond")
        after = self.wait_for_lines(len(lines) + 1)
        self.assert_kept(lines)
        self.assertFalse(after[-1][0].endswith("."), after)
        self.quit()


class Recognizer(FaultCase):
    """The neural recognizer with a tiny model."""

    def setUp(self):
        super().setUp()
        self.model = tiny_model.install(self.desktop.home / "data")
        self.phrase = tiny_model.PHRASE

    def helper(self):
        """The process id of the recognizer's helper."""
        def find():
            return [child for child in children(self.program.process.pid) if is_recognizer(child)]
        return self.desktop.wait("the helper", find)[0]

    def test_a_helper_killed_between_phrases_is_restarted(self):
        self.start_captions()
        lines = self.speak()
        first = self.helper()
        os.kill(first, signal.SIGKILL)
        self.speak()
        self.assertNotEqual(self.helper(), first)
        self.assert_kept(lines)
        self.wait_for_status()
        self.quit()

    def test_a_helper_killed_during_a_phrase_loses_no_word(self):
        """The helper that is started next decodes the phrase from its beginning."""
        self.start_captions()
        lines = self.speak()
        draft = self.begin_phrase(lines)
        os.kill(self.helper(), signal.SIGKILL)
        self.wait_for_line_of(draft, lines)
        self.assertEqual(self.saved_lines()[len(lines)][0], lines[0][0])
        self.assertEqual(self.program.state()["running"], True)
        self.quit()

    def begin_phrase(self, lines):
        """Plays a phrase; returns its draft."""
        self.desktop.play(self.phrase)
        self.desktop.wait("a draft", lambda: len(self.shown_paragraphs()) > 2 * len(lines))
        return self.shown_paragraphs()[-1]

    def wait_for_line_of(self, draft, lines):
        self.desktop.wait("a line of the draft", lambda: len(self.saved_lines()) > len(lines),
                          PATIENCE)
        self.assertTrue(self.saved_lines()[len(lines)][0].startswith(draft),
                        f"{self.saved_lines()} after {draft}")
        self.assert_kept(lines)

    def test_a_helper_that_hangs_does_not_hold_up_a_stop(self):
        self.start_captions()
        lines = self.speak()
        draft = self.begin_phrase(lines)
        os.kill(self.helper(), signal.SIGSTOP)
        self.toggle_captions()
        self.wait_for_status("Captions stopped before the last words were recognized.")
        self.wait_for_line_of(draft, lines)
        self.toggle_captions()
        self.program.wait_until_capturing()
        self.wait_for_status()
        self.quit()

    def test_a_helper_killed_during_a_stop_leaves_its_draft(self):
        self.start_captions()
        lines = self.speak()
        draft = self.begin_phrase(lines)
        helper = self.helper()
        os.kill(helper, signal.SIGSTOP)
        self.toggle_captions()
        self.program.wait_for_state("running", False)
        os.kill(helper, signal.SIGKILL)
        self.wait_for_line_of(draft, lines)
        self.toggle_captions()
        self.program.wait_until_capturing()
        self.wait_for_status()
        self.quit()

    def test_the_built_in_recognizer_goes_on_after_a_helper_that_is_killed_repeatedly(self):
        self.start_captions()
        lines = self.speak()
        for _ in range(3):
            os.kill(self.helper(), signal.SIGKILL)
            lines = self.speak()
        self.wait_for_status("stopped repeatedly. Captions continue with “Built-in recognizer”.")
        self.assertEqual(self.program.state()["running"], True)
        self.speak()
        self.assert_kept(lines)
        self.quit()

    def test_the_built_in_recognizer_goes_on_when_a_model_is_damaged(self):
        """Damages a model after its verification, without changing its size and time."""
        self.start_captions()
        lines = self.speak()
        self.toggle_captions()
        self.program.wait_for_state("running", False)
        for part in ("encoder", "decoder", "joiner"):
            damage(self.model[part])
        self.toggle_captions()
        self.wait_for_status("are damaged. Download it again in Settings.")
        self.wait_for_status("couldn’t be loaded. Captions continue with “Built-in recognizer”.")
        self.speak()
        self.assert_kept(lines)
        self.quit()

    def test_a_truncated_model_is_ignored(self):
        """The damaged model is no longer used; the built-in recognizer takes over."""
        self.start_captions()
        lines = self.speak()
        self.toggle_captions()
        self.program.wait_for_state("running", False)
        os.truncate(self.model["encoder"], 1000)
        self.toggle_captions()
        self.program.wait_until_capturing()
        self.speak()
        self.assert_kept(lines)
        self.wait_for_status()
        self.quit()


def damage(path):
    """Overwrites bytes in the middle of a file, as a failing disk would."""
    status = path.stat()
    with path.open("r+b") as file:
        for at in range(0, status.st_size - 64, 4096):
            file.seek(at)
            file.write(os.urandom(64))
    os.utime(path, ns=(status.st_atime_ns, status.st_mtime_ns))


if __name__ == "__main__":
    unittest.main()
