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

    def test_a_line_is_corrected_with_the_keyboard(self):
        self.open_library()
        self.select("Team call")
        self.wait_for_transcript(lambda text: "I will." in text)
        before = self.files[2].read_bytes()
        # Goes to the third line, as a user who has found a fault there.
        self.library.find("text", "Search Sessions").set_text("I will")
        self.wait_for_titles("Team call")
        self.desktop.key("F3")
        self.desktop.key("ctrl+shift+e")
        dialog = self.window("Correct Line")
        texts = [each.name for each in dialog.find_all("label") if each.is_showing]
        self.assertEqual("Its translation stays as it is." in texts,
                         bool(json.loads(before)["lines"][2]["translations"]))
        self.desktop.key("ctrl+a")
        self.desktop.run("xdotool", "type", "I shall.")
        self.desktop.key("Tab")
        self.desktop.key("Return")
        self.wait("the correction", lambda: self.files[2].read_bytes() != before)
        line = json.loads(self.files[2].read_text())["lines"][2]
        self.assertEqual((line["text"], line["original"]), ("I shall.", "I will."))
        before = self.files[2].read_bytes()
        self.desktop.key("ctrl+shift+e")
        self.window("Correct Line")
        self.desktop.key("ctrl+a")
        self.desktop.run("xdotool", "type", "I must.")
        self.desktop.key("ctrl+Return")
        self.wait("the second correction", lambda: self.files[2].read_bytes() != before)
        self.assertEqual(json.loads(self.files[2].read_text())["lines"][2]["text"], "I must.")
        self.quit()

    def test_the_list_is_sorted_and_filtered_with_the_keyboard(self):
        self.open_library()
        self.wait_for_titles(*ALL)
        button = self.library.wait_for("button menu", "Sort and Filter")
        # The second choice: the oldest first.
        self.open_menu(lambda: button.do("ShowMenu"))
        for key in ("Down", "Down", "Return"):
            self.desktop.key(key)
        self.wait_for_titles(*reversed(ALL))
        # The menu of dates: today.
        self.open_menu(lambda: button.do("ShowMenu"))
        for key in ("Down", "Down", "Down", "Down", "Down", "Right", "Down", "Return"):
            self.desktop.key(key)
        self.wait_for_titles("Evening talk")
        self.library.wait_for("button menu", "Sort and Filter: some sessions are left out")
        self.quit()

    def test_original_and_translation_are_read_side_by_side(self):
        self.open_library()
        self.select("Evening talk")
        self.library.wait_for("combo box", label="Show").choose("Side by Side")
        table = self.library.wait_for("table", "Original and Translations")
        for cell in ("Rivers find the sea.", "강은 바다를 찾아간다.", "Los ríos hallan el mar."):
            table.wait_for("cell", cell)
        self.quit()


if __name__ == "__main__":
    unittest.main()
