"""The program is killed while it saves."""

import json
import os
import signal
import threading
import time
import unittest
from pathlib import Path

from fault_case import PATIENCE, FaultCase

ENDS = int(os.environ.get("VELUN_KILLS", "2"))


class Kill(FaultCase):
    def test_a_kill_during_a_save_loses_no_lines(self):
        self.end_during_saves(signal.SIGKILL, -signal.SIGKILL)

    def test_a_termination_during_a_save_loses_no_lines(self):
        self.end_during_saves(signal.SIGTERM, 0)

    def end_during_saves(self, number, status):
        self.desktop.start_sound()
        for _ in range(ENDS):
            self.launch_and_caption()
            lines = self.speak()
            file = self.program.session_files()[0]
            whole = file.read_text()
            saving = threading.Thread(target=self.save_often)
            saving.start()
            self.signal_in_a_save(file, number)
            self.assertEqual(self.program.process.wait(PATIENCE), status, self.program.log())
            saving.join()
            # The file is complete and has every finished line; a clean exit adds the end time.
            self.assertEqual(without_end(file.read_text()), without_end(whole))
            self.assert_kept(lines)
            file.unlink()

    def launch_and_caption(self):
        self.launch()
        self.toggle_captions()
        self.program.wait_until_capturing()

    def save_often(self):
        while self.program.process.poll() is None:
            self.program.action("save-session")

    def signal_in_a_save(self, file, number):
        """Every save writes a temporary file; the program is stopped as soon as it appears. If
        the save has completed before the program stops, waits for the next save."""
        process = self.program.process
        part = file.with_name(f".{file.name}.velun-part")
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            if not part.exists():
                continue
            process.send_signal(signal.SIGSTOP)
            self.desktop.wait("the program to be held", lambda: state_of(process) == "T")
            is_met = part.exists()
            if is_met:
                process.send_signal(number)
            process.send_signal(signal.SIGCONT)
            if is_met:
                return
        raise AssertionError("No save was met")


def state_of(process):
    """The state of a process, a letter as in proc(5)."""
    return Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()[0]


def without_end(text):
    session = json.loads(text)
    session.pop("endedAt", None)
    return session


if __name__ == "__main__":
    unittest.main()
