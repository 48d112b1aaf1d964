"""`velun captions` on a recording that is long and has no words."""

import os
import subprocess
import unittest

from private_desktop import PrivateDesktop

EXECUTABLE = os.environ["VELUN_PROGRAM"]


class Silence(unittest.TestCase):
    def test_six_hours_of_silence_have_no_words(self):
        desktop = self.enterContext(PrivateDesktop())
        silence = desktop.root / "silence.flac"
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "anullsrc=r=8000:cl=mono",
                        "-t", "21600", silence], check=True)
        done = subprocess.run([EXECUTABLE, "captions", silence], check=False, capture_output=True,
                              env=desktop.environment)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))


if __name__ == "__main__":
    unittest.main()
