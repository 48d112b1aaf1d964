"""Faults of the tray and the display server."""

import unittest
from pathlib import Path

from fault_case import EXECUTABLE, PATIENCE, FaultCase
from process_usage import family
from trays import BusTray, EmbeddedTray


class Desktop(FaultCase):
    def test_the_icon_returns_with_an_embedding_tray(self):
        self.check_captions_without(EmbeddedTray(self.desktop))

    def test_the_icon_returns_with_a_tray_on_the_bus(self):
        self.check_captions_without(BusTray(self.desktop))

    def check_captions_without(self, tray):
        self.addCleanup(tray.close)
        self.start_captions()
        tray.wait_for_icon()
        lines = self.speak()
        tray.stop()
        # A second launch brings the panel back meanwhile.
        self.program.action("toggle-panel")
        self.program.wait_for_state("toggle-panel", False)
        self.assertEqual(self.desktop.start([EXECUTABLE]).wait(PATIENCE), 0)
        self.program.wait_for_state("toggle-panel", True)
        self.assertEqual(self.program.state()["running"], True)
        self.speak()
        tray.start()
        tray.wait_for_icon()
        self.assert_kept(lines)
        self.quit()

    def test_a_killed_display_server_ends_the_program(self):
        self.start_captions()
        lines = self.speak()
        helpers = family(self.program.process.pid)
        self.assertGreater(len(helpers), 1)
        self.desktop.display.kill()
        self.assertEqual(self.program.process.wait(PATIENCE), 1, self.program.log())
        self.assertEqual(self.saved_lines(), lines)
        self.desktop.wait("its helpers to end", lambda: not any(map(is_running, helpers)))


def is_running(process):
    try:
        return "State:\tZ" not in Path(f"/proc/{process}/status").read_text()
    except (FileNotFoundError, ProcessLookupError):
        return False


if __name__ == "__main__":
    unittest.main()
