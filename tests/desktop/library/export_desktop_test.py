"""The export window and the save dialog of the real program."""

import subprocess
import unittest

import session_files
import srt
import webvtt
from library_case import LibraryCase
from window_titles import EXPORT

SRT, VTT = "SubRip Subtitles (.srt)", "WebVTT Subtitles (.vtt)"
FORMATS = ["Markdown (.md)", "Text (.txt)", "Markdown Table (.md)", "Web Page (.html)", SRT, VTT,
           "Velun Session (.json)"]


def time(instant):
    """The time as in the exports, with a narrow no-break space before AM and PM."""
    return f"{instant:%I:%M:%S\u202f%p}".lstrip("0")


def date(instant):
    return f"{instant:%B} {instant.day}, {instant.year} at {time(instant)}"


class Exporting(LibraryCase):
    def prepare(self):
        self.desktop.environment["TZ"] = "UTC"
        super().prepare()
        (self.desktop.home / "out").mkdir()

    def open_export(self, title="Evening talk"):
        self.open_library()
        self.select(title)
        self.library.wait_for("push button", "Export").press()
        return self.window(EXPORT)

    def chooser(self, label):
        return self.export.wait_for("combo box", label=label)

    def press_export(self):
        """Presses the button and waits for the save dialog."""
        self.export.wait_for("push button", "Export…").press()
        dialog = self.wait("the save dialog", lambda: next(
            (node for node in self.application.children
             if node.role == "dialog" and node.name == EXPORT and node.is_showing), None))
        self.wait("the save dialog to be active", lambda: "active" in dialog.states)
        return dialog

    def save_as(self, dialog, path):
        dialog.wait_for("text").set_text(str(path))
        dialog.wait_for("push button", "Save").press()

    def exported(self, name):
        """The bytes that an export with the current choices writes."""
        path = self.desktop.home / "out" / name
        self.save_as(self.press_export(), path)
        self.wait("the window to go", lambda: not self.export.is_showing)
        self.wait("the file", path.exists)
        return path.read_bytes()

    def test_each_format_is_written_exactly(self):
        first, second = self.now, self.now + session_files.timedelta(seconds=5)
        end = self.now + session_files.timedelta(minutes=8)
        self.export = self.open_export()
        self.assertEqual(self.chooser("File Format").entries(), FORMATS)
        self.assertEqual(self.exported("a.md").decode(), f"""\
# Evening talk

Started: {date(first)}
Stopped: {date(end)}

### [{time(first)}] Original · English (United States) · Computer Audio

Rivers find the sea.

**Translation · Spanish**

> Los ríos hallan el mar.

**Translation · Korean**

> 강은 바다를 찾아간다.

### [{time(second)}] Original · English (United States) · Computer Audio

This takes a while.

""")
        self.library.wait_for("push button", "Export").press()
        self.export = self.window(EXPORT)
        self.chooser("File Format").choose("Text (.txt)")
        self.chooser("Content").choose("Translation Only")
        self.chooser("Translation Language").choose("Spanish")
        self.assertEqual(self.exported("a.txt").decode(), f"""\
Evening talk
Started: {date(first)}
Stopped: {date(end)}

[{time(first)}] Translation · Spanish
Los ríos hallan el mar.

""")
        self.library.wait_for("push button", "Export").press()
        self.export = self.window(EXPORT)
        self.chooser("Content").choose("Original Only")
        self.chooser("File Format").choose("Velun Session (.json)")
        self.wait("content not to matter", lambda: not self.chooser("Content").is_enabled)
        self.export.wait_for("label", "Keeps the original, all translations, and times, and can be "
                             "reopened in Velun.")
        self.assertEqual(self.exported("a.json"), session_files.encoded(self.sessions[0]))
        self.quit()

    def test_subtitles_are_read_by_others(self):
        self.export = self.open_export()
        self.chooser("File Format").choose(SRT)
        self.chooser("Translation Language").choose("Korean")
        self.exported("a.srt")
        self.library.wait_for("push button", "Export").press()
        self.export = self.window(EXPORT)
        self.chooser("File Format").choose(VTT)
        self.chooser("Content").choose("Original Only")
        self.exported("a.vtt")
        folder = self.desktop.home / "out"
        texts = ["Rivers find the sea.\n강은 바다를 찾아간다.", "This takes a while."]
        cues = list(srt.parse((folder / "a.srt").read_text(encoding="utf-8")))
        self.assertEqual([cue.content for cue in cues], texts)
        self.assertLess(cues[0].end, cues[1].start + cues[1].start.resolution)
        captions = webvtt.read(folder / "a.vtt").captions
        self.assertEqual([cue.text for cue in captions], ["Rivers find the sea.", texts[1]])
        self.assertEqual([cue.start for cue in captions],
                         [f"{cue.start}.000000"[:11].zfill(12) for cue in cues])
        # As tracks of a video, read back by its reader.
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "color=s=64x64:d=10",
                        "-i", folder / "a.srt", "-i", folder / "a.vtt", "-map", "0", "-map", "1",
                        "-map", "2", "-c:s:0", "srt", "-c:s:1", "webvtt", folder / "video.mkv"],
                       check=True)
        for track, expected in ((0, texts), (1, [cue.text for cue in captions])):
            read = subprocess.run(["ffmpeg", "-v", "error", "-i", folder / "video.mkv", "-map",
                                   f"0:s:{track}", "-f", "srt", "-"],
                                  check=True, capture_output=True, text=True).stdout
            self.assertEqual([cue.content for cue in srt.parse(read)], expected)
        self.quit()

    def test_the_dialog_proposes_a_name_and_adds_the_extension(self):
        self.export = self.open_export("Team call")
        day = f"{self.now - session_files.timedelta(days=6):%Y-%m-%d}"
        for title, ending in zip(FORMATS, ("md", "txt", "md", "html", "srt", "vtt", "json")):
            self.chooser("File Format").choose(title)
            dialog = self.press_export()
            self.assertEqual(dialog.wait_for("text").text, f"Velun-{day}.{ending}")
            dialog.wait_for("push button", "Cancel").press()
            self.wait("the dialog to go", lambda: not dialog.is_showing)
            self.wait("the export window", lambda: "active" in self.export.states)
        path = self.desktop.home / "out" / "named"
        self.save_as(self.press_export(), path)
        self.wait("the file", path.with_suffix(".json").exists)
        self.assertEqual([each.name for each in path.parent.iterdir()], ["named.json"])
        self.quit()

    def test_without_translations_only_the_format_can_be_chosen(self):
        self.export = self.open_export("Team call")
        self.assertFalse(self.chooser("Content").is_enabled)
        self.assertFalse(any(node.is_showing for node in
                             self.export.find_all("combo box", label="Translation Language")))
        self.export.wait_for("push button", "Cancel").press()
        self.wait("the window to go", lambda: not self.export.is_showing)
        self.quit()

    def test_overwriting_asks(self):
        path = self.desktop.home / "out" / "there.md"
        path.write_text("kept")
        self.export = self.open_export()
        dialog = self.press_export()
        self.save_as(dialog, path)
        self.question().wait_for("push button", "No").press()
        self.wait("the dialog again", lambda: "active" in dialog.states)
        self.assertEqual(path.read_text(), "kept")
        self.save_as(dialog, path)
        self.question().wait_for("push button", "Yes").press()
        self.wait("the window to go", lambda: not self.export.is_showing)
        self.assertTrue(path.read_text().startswith("# Evening talk\n"))
        self.quit()

    def question(self):
        return self.wait("the question", lambda: next(
            (node for node in self.application.children
             if node.role == "alert message" and "active" in node.states), None))

    def test_a_failure_is_reported_and_the_window_stays_open(self):
        self.export = self.open_export()
        path = "/proc/velun.md"  # where nobody can make a file
        self.save_as(self.press_export(), path)
        alert = self.window("Couldn’t Complete the Action")
        self.assertIn("velun.md", alert.find_all("label")[-1].name)
        alert.wait_for("push button", "OK").press()
        self.wait("the alert to go", lambda: not alert.is_showing)
        self.assertTrue(self.export.is_showing)
        self.assertTrue(self.exported("then.md").startswith(b"# Evening talk\n"))
        self.quit()

    def test_a_second_export_replaces_the_first_window(self):
        first = self.open_export("Team call")
        self.select("Evening talk")
        self.library.wait_for("push button", "Export").press()
        self.wait("the first to go", lambda: not first.is_showing)
        self.export = self.application.wait_for(name=EXPORT)
        self.assertTrue(self.chooser("Content").is_enabled)
        self.quit()

    def test_save_as_file_writes_the_session_file(self):
        self.open_library()
        self.select("Evening talk")
        self.desktop.key("ctrl+s")
        dialog = self.window("Save Session File")
        self.assertEqual(dialog.wait_for("text").text, f"Velun-{self.now:%Y-%m-%d}.json")
        path = self.desktop.home / "out" / "copy.json"
        self.save_as(dialog, path)
        self.wait("the file", path.exists)
        self.wait("its content", lambda: path.read_bytes() == self.files[0].read_bytes())
        self.quit()


if __name__ == "__main__":
    unittest.main()
