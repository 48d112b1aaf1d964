"""What other programs get of the captions of the real program."""

import os
import re
import signal
import subprocess
import sys
import unittest
from pathlib import Path

from spoken_case import SpokenCase
from velun_program import APPLICATION

PAGE = Path(__file__).parents[3] / "docs" / "live-feed.md"
PATH = "/app/velun/Velun/Captions"


def examples(language):
    """The code blocks of the page in a language."""
    return re.findall(rf"```{language}\n(.*?)```", PAGE.read_text(encoding="utf-8"), re.S)


class LiveFeed(SpokenCase):
    def start(self, command):
        process = self.desktop.start(command, stdout=subprocess.PIPE, text=True,
                                     start_new_session=True)
        self.addCleanup(process.communicate)
        # The shell's children too, which would keep the pipe open.
        self.addCleanup(os.killpg, process.pid, signal.SIGTERM)
        return process

    def wait_until_listening(self, count):
        """Waits until the bus knows this many listeners to the captions."""
        self.desktop.wait("the listeners", lambda: len(self.matches()) >= count)

    def matches(self):
        text = self.desktop.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                                "--object-path", "/org/freedesktop/DBus", "--method",
                                "org.freedesktop.DBus.Debug.Stats.GetAllMatchRules")
        return re.findall(rf"path='{PATH}'", text.replace("\\'", "'"))

    def line(self):
        """The panel's first line. A busy machine may play the phrase with gaps."""
        return self.transcript().split("\n")[0]

    def test_the_examples_of_the_page_print_the_lines(self):
        self.launch(offersCaptions=True)
        python = self.start([sys.executable, "-c", *examples("python")])
        monitor, last = examples("sh")
        shell = self.start(["sh", "-c", monitor])
        self.wait_until_listening(2)
        self.start_captions()
        self.speak()
        line = self.line()
        self.assertEqual(python.stdout.readline(), f"en_US {line}\n")
        self.assertEqual(shell.stdout.readline(), f"{line}\n")
        self.assertIn(line, self.desktop.run("sh", "-c", last))
        self.stop_captions()

    def test_nothing_is_offered_by_default(self):
        self.launch_with_line()
        self.assertNotIn("Captions", self.desktop.run(
            "gdbus", "introspect", "--session", "--dest", APPLICATION, "--object-path",
            "/app/velun/Velun", "--recurse"))
        self.stop_captions()

    def test_the_caption_file_has_the_line_until_the_stop(self):
        file = self.desktop.root / "captions.txt"
        self.launch(captionFile=str(file))
        self.start_captions()
        self.desktop.wait("the empty file", lambda: file.exists() and not file.read_text())
        self.speak()
        self.desktop.wait("the line", lambda: file.read_text() == f"{self.transcript()}\n")
        self.stop_captions()
        self.desktop.wait("the empty file", lambda: not file.read_text())

    def test_quitting_removes_the_caption_file(self):
        file = self.desktop.root / "captions.txt"
        self.launch(captionFile=str(file), captionFileEnd="remove", askBeforeDiscarding=False)
        self.start_captions()
        self.speak()
        self.desktop.wait("the line", lambda: file.read_text() == f"{self.transcript()}\n")
        self.program.action("quit")
        self.assert_ends()
        self.assertFalse(file.exists())


if __name__ == "__main__":
    unittest.main()
