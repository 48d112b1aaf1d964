"""The saved-sessions window of the real program: listing, searching, reading, copying, deleting
and opening from elsewhere.
"""

import json
import os
import re
import unittest
from datetime import datetime, timedelta

import session_files
from library_case import LibraryCase
from opener import Opener
from session_files import UTC
from velun_program import VelunProgram

ALL = ["Evening talk", "Biology lecture", "Team call", "Budget 2025/26", "Old lecture",
       "Caption Session"]


class Listing(LibraryCase):
    def test_sessions_are_listed_by_day_newest_first(self):
        self.open_library()
        self.wait_for_titles(*ALL)
        self.assertEqual(self.rows(), [
            "Today", "Evening talk, 2 sentences · with translation",
            "Yesterday", "Biology lecture, 1 sentence · with translation",
            "Previous 7 Days", "Team call, 3 sentences",
            "Previous 30 Days", "Budget 2025/26, 1 sentence",
            "March 2024", "Old lecture, 1 sentence · with translation",
            "January 2024", "Caption Session, 1 sentence · with translation"])
        self.quit()

    def test_an_empty_list_says_so(self):
        for path in self.files:
            path.unlink()
        self.open_library()
        self.library.wait_for("notification", "No Saved Sessions")
        self.quit()

    def test_a_refresh_lists_new_files(self):
        self.open_library()
        self.wait_for_titles(*ALL)
        session_files.write(self.program.sessions, session_files.session(
            "Just now", self.now + timedelta(seconds=1), session_files.TEAM))
        self.desktop.key("F5")
        self.wait_for_titles("Just now", *ALL)
        self.quit()

    def test_unreadable_files_are_counted_in_a_banner_and_kept(self):
        broken = self.program.sessions / "broken.json"
        broken.write_text('{"schemaVersion" : 1')
        newer = self.program.sessions / "newer.json"
        newer.write_bytes(self.files[0].read_bytes().replace(b'"schemaVersion" : 1',
                                                             b'"schemaVersion" : 2'))
        self.open_library()
        banner = self.library.wait_for("notification", "Couldn’t read 2 sessions. The original files "
                                       "are still in the sessions folder.")
        self.wait_for_titles(*ALL)
        broken.unlink()
        self.assertTrue(newer.exists())
        newer.unlink()
        self.desktop.key("F5")
        self.wait("the banner to go", lambda: not banner.is_showing)
        self.quit()


class Frame(LibraryCase):
    def test_the_frame_is_kept_after_a_restart(self):
        self.open_library()
        self.assertEqual(self.library.extents[2:], (960, 620))
        number = self.desktop.run("xdotool", "getactivewindow").strip()
        self.desktop.run("xdotool", "windowsize", "--sync", number, 800, 500)
        self.desktop.run("xdotool", "windowmove", "--sync", number, 60, 70)
        self.wait("the new size", lambda: self.library.extents[2:] == (800, 500))
        self.wait("the new place", lambda: self.library.extents[0] < 100)
        frame = self.library.extents
        self.quit()
        self.open_library()
        self.wait("the same frame", lambda: self.library.extents == frame)
        self.desktop.run("xdotool", "windowsize", "--sync",
                         self.desktop.run("xdotool", "getactivewindow").strip(), 300, 200)
        self.wait("the smallest size", lambda: self.library.extents[2:] == (760, 430))
        self.quit()


class Searching(LibraryCase):
    def prepare(self):
        super().prepare()
        lines = [(f"Sentence {number} of a long lecture.", {}) for number in range(300)]
        lines[250] = ("Here the PLATYPUS comes in.", {"de": "Hier kommt das Schnabeltier."})
        self.files.append(session_files.write(self.program.sessions, session_files.session(
            "Long lecture", datetime(2023, 5, 5, tzinfo=UTC), lines)))

    def search(self, text):
        self.library.wait_for("text", "Search Sessions").set_text(text)

    def test_a_search_ignores_case_and_filters_the_list(self):
        self.open_library()
        self.wait_for_titles(*ALL, "Long lecture")
        self.search("LECTURE")  # in titles and in texts
        self.wait_for_titles("Biology lecture", "Old lecture", "Long lecture")
        self.search("LOS RÍOS")  # in a translation
        self.wait_for_titles("Evening talk")
        self.search("세포에는")
        self.wait_for_titles("Biology lecture", "Old lecture")
        self.search("nothing of the kind")
        self.library.wait_for("notification", "No Results")
        self.search("")
        self.wait_for_titles(*ALL, "Long lecture")
        self.quit()

    def test_the_first_match_is_scrolled_to_and_marked(self):
        self.open_library()
        self.select("Long lecture")
        view = self.library.wait_for("text", "Caption Text")
        self.wait("the transcript", lambda: "PLATYPUS" in view.text)
        self.assertEqual(self.marked_points(view), 0)
        self.search("platypus")
        self.wait_for_titles("Long lecture")
        self.wait("the mark in view", lambda: self.marked_points(view) > 200)
        self.search("")
        self.wait("the mark to go", lambda: self.marked_points(view) == 0)
        self.quit()

    def marked_points(self, view):
        """The number of pixels of the view in the colour of search marks."""
        left, top, width, height = view.extents
        picture = self.desktop.root / "screen.png"
        self.desktop.take_picture(picture)
        colors = self.desktop.run("convert", picture, "-crop", f"{width}x{height}+{left}+{top}",
                                  "-format", "%c", "histogram:info:-")
        return sum(int(count) for count in re.findall(r"(\d+): .*#FFD54A\b", colors))


class Reading(LibraryCase):
    def chooser(self, label):
        return self.library.wait_for("combo box", label=label)

    def clipboard(self):
        return self.desktop.run("xclip", "-selection", "clipboard", "-o")

    def copy(self):
        """The text that the copy button puts on the clipboard."""
        before = self.clipboard()
        self.library.wait_for("push button", "Copy All").press()
        self.library.wait_for("push button", "Copied")
        self.wait("the clipboard", lambda: self.clipboard() != before)
        self.library.wait_for("push button", "Copy All")  # back again
        return self.clipboard()

    def test_a_session_is_read_as_a_whole_or_in_part_and_copied(self):
        self.open_library()
        self.select("Evening talk")
        self.wait_for_transcript(lambda text: "Rivers find the sea." in text)
        self.assertIn("강은 바다를 찾아간다.", self.transcript())
        self.assertIn("Los ríos hallan el mar.", self.transcript())
        self.assertEqual(self.chooser("Show").entries(),
                         ["Original + Translation", "Original Only", "Translation Only",
                          "Side by Side"])
        self.assertEqual(self.chooser("Translation Language").entries(),
                         ["All Translation Languages", "Spanish", "Korean"])
        self.assertEqual(self.copy(), "Rivers find the sea.\nLos ríos hallan el mar.\n"
                                      "강은 바다를 찾아간다.\n\nThis takes a while.")

        self.chooser("Translation Language").choose("Spanish")
        self.wait_for_transcript(lambda text: "강은" not in text and "Los ríos" in text)
        self.assertEqual(self.copy(), "Rivers find the sea.\nLos ríos hallan el mar.\n\n"
                                      "This takes a while.")
        self.chooser("Show").choose("Translation Only")
        self.wait_for_transcript(lambda text: "Rivers" not in text and "takes" not in text)
        self.assertEqual(self.copy(), "Los ríos hallan el mar.")
        self.chooser("Show").choose("Original Only")
        self.wait_for_transcript(lambda text: "Rivers" in text and "Los ríos" not in text)
        self.assertEqual(self.copy(), "Rivers find the sea.\n\nThis takes a while.")
        self.quit()

    def test_screen_readers_get_the_positions_of_visible_text(self):
        self.open_library()
        self.select("Team call")
        view = self.library.wait_for("text", "Caption Text")
        self.wait_for_transcript(lambda text: "I will." in text)
        left, top, width, height = view.extents
        places = [view.text.index(text) for text, _ in session_files.TEAM]

        def are_below_each_other():
            tops = [view.character_extents(place)[1] for place in places]
            return top < tops[0] < tops[1] - 30 < tops[2] - 60 < top + height

        self.wait("the places of the lines", are_below_each_other)
        self.quit()

    def test_a_transcript_of_an_earlier_version_is_read_too(self):
        self.open_library()
        self.select("Caption Session")
        self.wait_for_transcript(lambda text: "20:15:03" in text)
        self.assertIn("Hello", self.transcript())
        self.assertIn("안녕", self.transcript())
        self.quit()


class Deleting(LibraryCase):
    def trash(self):
        return {path.name for path in
                (self.desktop.home / "data" / "Trash" / "files").glob("*")}

    def delete(self):
        self.library.wait_for("push button", "Delete").press()

    def test_the_file_goes_to_the_trash_and_a_neighbour_is_selected(self):
        self.open_library()
        self.select("Biology lecture")
        self.delete()
        self.wait_for_titles(*[title for title in ALL if title != "Biology lecture"])
        self.wait_for_selection("Team call")
        self.assertEqual(self.trash(), {self.files[1].name})
        self.assertFalse(self.files[1].exists())

        self.select("Caption Session")  # the last: the one above follows
        self.delete()
        self.wait_for_selection("Old lecture")
        self.assertEqual(self.trash(), {self.files[1].name, self.files[5].name})

        trashed = self.desktop.home / "data" / "Trash" / "files" / self.files[1].name
        self.assertEqual(trashed.read_bytes(), session_files.encoded(self.sessions[1]))
        self.quit()

    def test_the_neighbour_is_chosen_among_the_search_results(self):
        self.open_library()
        self.library.wait_for("text", "Search Sessions").set_text("lecture")
        self.wait_for_titles("Biology lecture", "Old lecture")
        self.select("Old lecture")
        self.delete()
        self.wait_for_titles("Biology lecture")
        self.wait_for_selection("Biology lecture")
        self.delete()
        self.library.wait_for("notification", "No Results")
        self.assertFalse(self.library.find("push button", "Delete").is_enabled)
        self.quit()

    def test_the_only_session_leaves_nothing_selected(self):
        for path in self.files[1:]:
            path.unlink()
        self.open_library()
        self.select("Evening talk")
        self.delete()
        self.library.wait_for("notification", "No Saved Sessions")
        self.assertEqual(self.transcript(), "")
        self.quit()

    def test_deleting_a_missing_file_is_reported(self):
        self.open_library()
        self.select("Team call")
        self.files[2].unlink()
        self.delete()
        alert = self.window("Couldn’t Complete the Action")
        self.assertTrue(alert.find_all("label")[-1].name.startswith(
            "Couldn’t delete the session: "), alert.tree())
        alert.wait_for("push button", "OK").press()
        self.wait("the alert to go", lambda: not alert.is_showing)
        self.quit()


class WithoutTrash(LibraryCase):
    """A session on a read-only disk, which has no trash."""

    def setUp(self):
        super().setUp()
        self.disk = self.desktop.root / "disk"
        self.guest = session_files.write(self.disk, session_files.session(
            "Guest lecture", self.now - timedelta(days=100), session_files.CELLS))
        probe = self.in_namespace("true")
        if self.desktop.start(probe).wait(20) != 0:
            self.skipTest("no mount namespaces here")

    def in_namespace(self, *command):
        """A command that runs another one with a read-only disk."""
        mount = 'mount --bind "$0" "$0" && mount -o remount,bind,ro "$0" && exec "$@"'
        return ["unshare", "--map-root-user", "--mount", "sh", "-c", mount, self.disk, *command]

    def test_the_file_stays_and_the_reason_is_shown(self):
        launcher = self.desktop.root / "velun-on-disk"
        command = " ".join(f"'{part}'" for part in self.in_namespace(os.environ["VELUN_PROGRAM"]))
        launcher.write_text(f"#!/bin/sh\nexec {command}\n")
        launcher.chmod(0o755)
        self.program = VelunProgram(self.desktop, launcher)
        self.open_library()
        self.program.open(self.guest)
        self.wait_for_selection("Guest lecture")
        self.library.wait_for("push button", "Delete").press()
        alert = self.window("Couldn’t Complete the Action")
        told = alert.find_all("label")[-1].name
        self.assertTrue(told.startswith("Couldn’t delete the session: "), told)
        self.assertIn(self.guest.name, told)
        self.assertTrue(told.endswith("The file is still where it was."), told)
        alert.wait_for("push button", "OK").press()
        self.wait("the alert to go", lambda: not alert.is_showing)
        self.assertEqual(self.selected(), ["Guest lecture"])
        self.assertEqual(len(self.titles()), len(ALL) + 1)
        self.assertTrue(self.guest.exists())
        self.assertFalse(list(self.desktop.home.rglob(self.guest.name)))
        self.quit()


class Revealing(LibraryCase):
    def test_without_a_file_manager_service_the_folder_is_opened(self):
        opener = Opener(self.desktop)
        self.open_library()
        self.select("Team call")
        more = self.library.wait_for("button menu", "More")
        self.open_menu(lambda: more.do("ShowMenu"))
        self.desktop.run("xdotool", "key", "Down", "Down", "Down", "Return")
        self.wait("the opened folder", lambda: opener.opened)
        self.assertEqual(opener.opened[0].rstrip("/"), self.program.sessions.as_uri())
        self.quit()


class OpeningFromElsewhere(LibraryCase):
    def prepare(self):
        super().prepare()
        self.elsewhere = self.desktop.home / "elsewhere"
        self.guest = session_files.write(self.elsewhere, session_files.session(
            "Guest lecture", self.now - timedelta(days=100), session_files.CELLS))

    def test_a_file_manager_opens_it_and_it_is_selected(self):
        self.launch()
        self.program.open(self.guest)
        self.library = self.window("Velun — Saved Sessions")
        self.wait_for_selection("Guest lecture")
        self.wait_for_transcript(lambda text: "A cell has a wall." in text)
        self.assertEqual(len(self.titles()), len(ALL) + 1)
        self.program.open(self.guest)  # once more, and the listed one
        self.program.open(self.files[2])
        self.wait_for_selection("Team call")
        self.assertEqual(self.titles().count("Guest lecture"), 1)
        self.assertEqual(self.titles().count("Team call"), 1)
        self.desktop.key("F5")
        self.wait_for_selection("Team call")
        self.assertEqual(len(self.titles()), len(ALL) + 1)
        self.quit()

    def test_several_files_are_opened_at_once_also_of_earlier_versions(self):
        legacy = session_files.write_legacy(self.elsewhere, datetime(2022, 7, 8, 9, 10, 11),
                                            [("09:10:12", "Good evening", "좋은 저녁")])
        self.launch()
        self.program.open(self.guest, legacy)
        self.library = self.window("Velun — Saved Sessions")
        self.wait_for_transcript(lambda text: "Good evening" in text)
        self.assertEqual(self.titles().count("Guest lecture"), 1)
        self.assertEqual(self.rows()[-2:],
                         ["July 2022", "Caption Session, 1 sentence · with translation"])
        self.quit()

    def test_the_open_panel_opens_it(self):
        self.open_library()
        self.desktop.key("ctrl+o")
        panel = self.window("Open Velun Session")
        panel.wait_for("label", "Choose a Velun session (.json) or a Markdown transcript from an "
                       "earlier version (.md).")
        field = panel.wait_for("text", label="File name:")
        self.assertEqual(field.text, "")
        field.set_text(str(self.guest))
        panel.wait_for("push button", "Open").press()
        self.wait_for_selection("Guest lecture")
        self.quit()

    def test_a_broken_file_is_reported_and_changes_nothing(self):
        broken = self.elsewhere / "broken.json"
        content = json.loads(self.guest.read_text())
        del content["title"]
        broken.write_text(json.dumps(content))
        self.open_library()
        self.select("Team call")
        self.program.open(broken)
        alert = self.window("Couldn’t Complete the Action")
        self.assertIn("broken.json", alert.find_all("label")[-1].name)
        alert.wait_for("push button", "OK").press()
        self.wait("the alert to go", lambda: not alert.is_showing)
        self.assertEqual(self.titles(), ALL)
        self.assertEqual(self.selected(), ["Team call"])
        self.assertEqual(json.loads(broken.read_text()), content)
        self.quit()

    def test_a_newer_file_is_refused_with_its_reason(self):
        newer = self.elsewhere / "newer.json"
        newer.write_bytes(self.guest.read_bytes().replace(b'"schemaVersion" : 1',
                                                          b'"schemaVersion" : 2'))
        self.open_library()
        self.program.open(newer)
        alert = self.window("Couldn’t Complete the Action")
        self.assertEqual(alert.find_all("label")[-1].name,
                         "This session was saved by a newer version of Velun.")
        self.quit_over(alert)

    def quit_over(self, alert):
        alert.wait_for("push button", "OK").press()
        self.wait("the alert to go", lambda: not alert.is_showing)
        self.quit()


if __name__ == "__main__":
    unittest.main()
