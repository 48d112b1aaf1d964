"""The package on a minimal system: it installs, runs, captions, and is removed completely."""

import array
import json
import os
import shutil
import socket
import struct
import subprocess
import threading
import unittest
import wave
from pathlib import Path

from bare_system import BareSystem, missing
from packaged_captions import caption
from private_desktop import PrivateDesktop, end
from velun_program import VelunProgram

SPEECH_DATA = Path(os.environ["VELUN_SPEECH_DATA"])
MODEL = "zipformer2-ctc.int8.onnx"
# The helper's messages.
CONFIGURE, AUDIO, FINALIZE, READY, HEARD, SETTLED = 1, 2, 3, 65, 68, 69


def package():
    made = sorted(Path(os.environ["VELUN_PACKAGES"]).glob("velun_*.deb"),
                  key=lambda path: path.stat().st_mtime)
    assert made, "Make the package first, with scripts/package"
    return made[-1]


@unittest.skipIf(missing(), missing())
class OnABareSystem(unittest.TestCase):
    def test_it_installs_runs_and_is_removed(self):
        system = self.enterContext(BareSystem())
        desktop = self.enterContext(PrivateDesktop())
        copy = shutil.copy(package(), desktop.root)
        system.install(copy)
        files = [line for line in system.run("dpkg", "-L", "velun").splitlines()
                 if not (system.root / line[1:]).is_dir()]
        self.assertIn("/usr/bin/velun", files)

        with self.subTest("the program captions speech"):
            program = VelunProgram(desktop, "/usr/bin/velun")
            program.prefix = system.inside()
            self.assertEqual(caption(desktop, program), "Thank you for your time.")
        with self.subTest("the helper recognizes with its library"):
            self.assertEqual(self.answers_of_the_helper(system, desktop.root),
                             {READY, HEARD, SETTLED})
        with self.subTest("removed, it leaves what is the user's"):
            system.run("apt-get", "purge", "-y", "velun")
            self.assertEqual([file for file in files if os.path.lexists(system.root / file[1:])], [])
            self.assertEqual(len(program.session_files()), 1)
            self.assertTrue(program.preferences.exists())

    def answers_of_the_helper(self, system, folder):
        for name in (MODEL, "tokens.txt"):
            shutil.copy(SPEECH_DATA / name, folder)
        settings = {"ctc": str(folder / MODEL), "tokens": str(folder / "tokens.txt"),
                    "language": "en"}
        with wave.open(str(SPEECH_DATA / "six.wav")) as clip:
            samples = array.array("h", clip.readframes(clip.getnframes()))
        sound = array.array("f", [sample / 32768 for sample in samples]).tobytes()
        # The helper serves until its descriptor 3 is closed.
        control, its_control = socket.socketpair()
        helper = subprocess.Popen(
            system.inside("bash", "-c",
                          f"exec /usr/bin/velun-recognizer 3<&{its_control.fileno()}"),
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, pass_fds=[its_control.fileno()])
        self.addCleanup(end, helper)
        its_control.close()
        said = b"".join(struct.pack("=IB", len(body), kind) + body for kind, body in (
            (CONFIGURE, json.dumps(settings).encode()), (AUDIO, sound), (FINALIZE, b"")))
        limit = threading.Timer(120, helper.kill)
        limit.start()
        helper.stdin.write(said)
        helper.stdin.close()
        heard = helper.stdout.read()
        control.close()
        self.assertEqual(helper.wait(), 0, heard)
        limit.cancel()
        kinds = set()
        while heard:
            length, kind = struct.unpack_from("=IB", heard)
            if kind in (READY, HEARD, SETTLED):
                kinds.add(kind)
            heard = heard[5 + length:]
        return kinds


if __name__ == "__main__":
    unittest.main()
