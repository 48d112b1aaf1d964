"""Ends of the program in the middle of a save."""

import json
import os
import random
import signal
import threading
import time
import unittest

from fault_case import PATIENCE, FaultCase

ENDS = int(os.environ.get("VELUN_KILLS", "2"))
MORE_ENDS = 6  # while no signal has met a save yet
SAVES = 40


class Kill(FaultCase):
    def test_killed_in_the_middle_of_a_save(self):
        self.end_during_saves(signal.SIGKILL, -signal.SIGKILL)

    def test_terminated_in_the_middle_of_a_save(self):
        self.end_during_saves(signal.SIGTERM, 0)

    def end_during_saves(self, number, status):
        """Every save writes beside the file; as soon as that is seen, the signal follows."""
        chance = random.Random(number)
        hits = 0
        self.desktop.start_sound()
        for attempt in range(ENDS + MORE_ENDS):
            if attempt >= ENDS and hits:
                break
            self.launch_and_caption()
            lines = self.speak()
            file = self.program.session_files()[0]
            whole = file.read_text()
            saving = threading.Thread(target=self.save_often)
            saving.start()
            hits += self.signal_in_a_save(file, number, chance.uniform(0, 0.0005))
            self.assertEqual(self.program.process.wait(PATIENCE), status, self.program.log())
            saving.join()
            # Whole, and with everything that was finished; a clean end adds its time.
            self.assertEqual(without_end(file.read_text()), without_end(whole))
            self.assert_kept(lines)
            file.unlink()
        self.assertGreater(hits, 0, "No signal met a save")

    def launch_and_caption(self):
        self.launch()
        self.toggle_captions()
        self.program.wait_until_capturing()

    def save_often(self):
        for _ in range(SAVES):
            if self.program.process.poll() is not None:
                return
            self.program.action("save-session")

    def signal_in_a_save(self, file, number, delay):
        """Whether the part of a save was still there when the signal was sent."""
        part = file.with_name(f".{file.name}.velun-part")
        end = time.monotonic() + PATIENCE
        while not part.exists():
            if time.monotonic() > end:
                raise AssertionError("There was no save")
        time.sleep(delay)
        self.program.process.send_signal(number)
        return part.exists()


def without_end(text):
    session = json.loads(text)
    session.pop("endedAt", None)
    return session


if __name__ == "__main__":
    unittest.main()
