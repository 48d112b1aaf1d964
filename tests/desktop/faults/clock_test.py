"""A wall clock that jumps while captions run."""

import json
import unittest
from datetime import datetime, timezone
from pathlib import Path

from fault_case import FaultCase

HOUR = 3600


class Clock(FaultCase):
    def setUp(self):
        super().setUp()
        (library,) = Path("/usr/lib").glob("*/faketime/libfaketime.so.1")
        self.offset = self.desktop.root / "clock"
        self.move_clock(0)
        preset = {"LD_PRELOAD": library, "FAKETIME_TIMESTAMP_FILE": self.offset,
                  "FAKETIME_NO_CACHE": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1",
                  # The library is loaded before the sanitizer's, if there is one.
                  "ASAN_OPTIONS": "verify_asan_link_order=0"}
        self.program.prefix = ["env", *(f"{name}={value}" for name, value in preset.items())]

    def move_clock(self, seconds):
        """Sets the clock; it applies at once."""
        whole = self.offset.with_suffix(".new")
        whole.write_text(f"{seconds:+d}")
        whole.rename(self.offset)

    def session(self):
        (file,) = self.program.session_files()
        return json.loads(file.read_text())

    def test_clock_changes_lose_no_lines(self):
        self.start_captions()
        first = self.speak()
        self.move_clock(-HOUR)
        second = self.speak()
        self.move_clock(+HOUR)
        third = self.speak()
        # One file, in the order in which it was said, with the time that the clock showed.
        self.assert_kept(first)
        self.assert_kept(second)
        self.assertEqual(third, self.saved_lines())
        times = [datetime.fromisoformat(line["time"]) for line in self.session()["lines"]]
        now = datetime.now(timezone.utc)
        ages = [round((now - time).total_seconds() / HOUR) for time in times]
        self.assertEqual(ages[0], 0)
        self.assertEqual(ages[len(first)], 1)
        self.assertEqual(ages[len(second)], -1)
        self.move_clock(-HOUR)
        self.toggle_captions()
        self.desktop.wait("the end of the session", lambda: "endedAt" in self.session())
        self.check_the_library_reads_it()
        self.quit()

    def check_the_library_reads_it(self):
        """The session ends before its start."""
        session = self.session()
        self.assertLess(session["endedAt"], session["startedAt"])
        self.program.action("show-history")
        self.desktop.wait_for_window("Velun — Saved Sessions")
        self.desktop.wait("the session in the list",
                          lambda: self.is_in_view(session["lines"][0]["text"]))

    def is_in_view(self, text):
        return any(text in node.name + node.description + node.text
                   for node in self.application.walk())


if __name__ == "__main__":
    unittest.main()
