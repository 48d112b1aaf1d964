"""Titles and several sessions at once in the real program's window of saved sessions."""

import json
import unittest

from library_case import LibraryCase

ALL = ["Evening talk", "Biology lecture", "Team call", "Budget 2025/26", "Old lecture",
       "Caption Session"]


class Sessions(LibraryCase):
    def select_two(self):
        self.open_library()
        self.select("Biology lecture")
        # From the search field to the list.
        self.desktop.key("Down")
        self.select("Biology lecture")
        self.desktop.key("shift+Down")
        self.wait_for_selection("Biology lecture", "Team call")

    def test_a_session_gets_a_title(self):
        self.open_library()
        self.select("Team call")
        self.desktop.key("F2")
        self.window("Rename Session")
        self.desktop.key("ctrl+a")
        self.desktop.run("xdotool", "type", "Monday call")
        self.desktop.key("Return")
        self.wait("the title", lambda: "Monday call" in self.titles())
        self.assertEqual(json.loads(self.files[2].read_text())["title"], "Monday call")
        self.quit()

    def test_several_sessions_are_deleted_and_brought_back(self):
        self.select_two()
        self.desktop.key("Delete")
        self.wait_for_titles(*(title for title in ALL
                               if title not in ("Biology lecture", "Team call")))
        self.assertFalse(self.files[1].exists() or self.files[2].exists())
        self.desktop.key("ctrl+z")
        self.wait_for_titles(*ALL)
        self.assertTrue(self.files[1].exists() and self.files[2].exists())
        self.quit()


if __name__ == "__main__":
    unittest.main()
