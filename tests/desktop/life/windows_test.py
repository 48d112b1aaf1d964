"""Titles, positions, links and keys of the real program's windows."""

import os
import re
import unittest
from pathlib import Path

from opener import Opener
from program_case import ProgramCase
from window_titles import ABOUT, HISTORY, PANEL, SETTINGS, UPDATES

HERE = Path(__file__).resolve().parent


class Windows(ProgramCase):
    def test_about_shows_the_version_and_the_credits(self):
        self.launch()
        about = self.open_window("show-about", ABOUT)
        self.assertIn("Version 0.1.0", [label.name for label in about.find_all("label")])
        self.assertFalse([node for node in about.find_all("graphic") if not node.name])
        credits = about.find("label", "Made with").text
        for credit in ("Qt — LGPL-3.0-only", "Vosk, Kaldi, OpenFst — Apache-2.0",
                       "ONNX Runtime — MIT", "Apertium — GPL-2.0-or-later"):
            self.assertIn(credit, credits)
        self.quit()

    def test_about_in_korean(self):
        self.program.write_preferences(language="ko")
        self.launch()
        about = self.open_window("show-about", "Velun 정보")
        self.assertIn("버전 0.1.0", [label.name for label in about.find_all("label")])
        self.quit()

    def test_settings_promise_no_hiding_on_x11(self):
        self.program.write_preferences(hideFromScreenSharing=True)
        self.launch()
        settings = self.open_window("show-settings", SETTINGS)
        self.show_page(settings, "Captions")
        self.wait("the note", lambda: self.notes(settings, "This desktop offers no way"))
        self.assertFalse(self.notes(settings, "Keeps the caption window off"))
        # PipeWire starts later and ends: the note follows.
        server, _ = self.desktop.start_sound()
        self.wait("the other note", lambda: self.notes(
            settings, "Other people may see the caption window: in an X11 session every program "
                      "can read the screen."))
        self.assertFalse(self.notes(settings, "This desktop offers no way"))
        self.assertFalse(self.notes(settings, "Keeps the caption window off"))
        server.kill()
        self.wait("the first note", lambda: self.notes(settings, "This desktop offers no way"))
        self.quit()

    def test_reopened_settings_know_whether_pipewire_runs(self):
        self.launch()
        settings = self.open_window("show-settings", SETTINGS)
        self.show_page(settings, "Captions")
        self.assertTrue(self.notes(settings, "This desktop offers no way"))
        self.desktop.start_sound()
        self.program.action("show-settings")
        self.wait("the other note", lambda: self.notes(settings, "Other people may see"))
        self.quit()

    @staticmethod
    def notes(window, beginning):
        """The visible texts that begin so."""
        return [label.name for label in window.find_all("label")
                if label.name.startswith(beginning) and label.is_showing]

    def test_updates_without_a_list_of_releases(self):
        self.launch()
        updates = self.open_window("check-for-updates", UPDATES)
        updates.wait_for("notification", "This copy of Velun cannot check for updates")
        updates.find("push button", "Close").press()
        self.wait("the window to close", lambda: UPDATES not in self.desktop.windows())
        self.quit()

    def test_a_saved_session_is_shown_in_the_file_manager(self):
        manager = self.desktop.start(["/usr/bin/python3", "-B", HERE / "file_manager.py"],
                                     stdout=-1, text=True)
        self.addCleanup(manager.stdout.close)
        self.assertEqual(manager.stdout.readline(), "ready\n")
        file = self.reveal_saved_session()
        self.assertEqual(manager.stdout.readline().strip(), file.as_uri())
        self.quit()

    def test_without_a_file_manager_on_the_bus_its_folder_is_opened(self):
        opener = Opener(self.desktop)
        file = self.reveal_saved_session()
        self.wait("the folder", lambda: file.parent.as_uri() in map(without_slash, opener.opened))
        self.quit()

    def test_the_sessions_folder_is_created_and_opened(self):
        opener = Opener(self.desktop)
        self.launch()
        self.program.action("open-sessions-folder")
        self.wait("the folder",
                  lambda: self.program.sessions.as_uri() in map(without_slash, opener.opened))
        self.assertTrue(self.program.sessions.is_dir())
        self.quit()

    def test_what_it_opens_gets_the_environment_of_the_session(self):
        opener = Opener(self.desktop)
        for own in ({}, {"QT_QPA_PLATFORM": "xcb"}):
            with self.subTest(**own):
                self.desktop.environment |= own
                before = len(opener.opened)
                self.launch()
                self.program.action("open-sessions-folder")
                self.wait("the folder", lambda: len(opener.opened) > before)
                self.assertEqual(opener.variables_of_qt(), own)
                self.quit()

    def test_a_folder_that_no_program_opens_is_an_error(self):
        self.desktop.environment["PATH"] = str(self.desktop.root)
        self.program.process = self.desktop.start([self.program.executable], log="velun")
        self.desktop.environment["PATH"] = os.environ["PATH"]
        self.wait("the program", self.program.owns_name)
        self.application = self.accessibility.application("app.velun.Velun")
        self.program.action("open-sessions-folder")
        error = self.application.wait_for("dialog", "Couldn’t Complete the Action")
        self.assertTrue(any(label.name.startswith("No program that opens the folder")
                            for label in error.find_all("label")))
        error.find("push button", "OK").press()
        self.wait("the end of the alert", lambda: not self.application.find("dialog"))
        self.quit()

    def test_keys_work_in_every_window(self):
        self.save_session()
        self.launch()
        for action, title in (("show-settings", SETTINGS), ("show-history", HISTORY), ("show-about", ABOUT),
                              ("check-for-updates", UPDATES)):
            with self.subTest(title):
                self.activate(action, title)
                before = self.program.state()["toggle-panel"]
                self.desktop.key("ctrl+l")
                self.program.wait_for_state("toggle-panel", not before)
                self.activate(action, title)
                self.desktop.key("ctrl+comma")
                self.window(SETTINGS)
                self.activate(action, title)
                self.desktop.key("ctrl+shift+h")
                self.window(HISTORY)
                self.activate(action, title)
                self.desktop.key("ctrl+o")
                self.window("Open Velun Session")
                self.desktop.key("Escape")
                self.wait("the end of it", lambda: "Open Velun Session"
                          not in self.desktop.windows())
        self.activate("show-settings", SETTINGS)
        self.desktop.key("ctrl+q")
        self.assertEqual(self.program.process.wait(30), 0, self.program.log())

    def test_keys_work_in_the_panel(self):
        for key, opens in (("ctrl+comma", SETTINGS), ("ctrl+shift+h", HISTORY),
                           ("ctrl+o", "Open Velun Session"), ("ctrl+l", None)):
            with self.subTest(key):
                self.launch()
                self.activate("show-panel", PANEL)
                self.desktop.key(key)
                if opens:
                    self.window(opens)
                else:
                    self.program.wait_for_state("toggle-panel", False)
                self.assertEqual(self.program.terminate(), 0, self.program.log())

    def test_the_saved_session_is_saved_and_exported_by_keys(self):
        self.save_session()
        self.launch()
        self.select_saved_session()
        self.desktop.key("ctrl+s")
        self.window("Save Session File")
        self.desktop.key("Escape")
        self.window(HISTORY)
        self.desktop.key("ctrl+shift+s")
        self.window("Export Session")
        # The shortcuts also work in this window.
        self.desktop.key("ctrl+comma")
        self.window(SETTINGS)
        self.quit()

    def test_files_are_chosen_above_the_captions(self):
        self.save_session()
        self.launch()
        self.activate("show-panel", PANEL)
        self.select_saved_session()
        for key, title in (("ctrl+o", "Open Velun Session"), ("ctrl+s", "Save Session File")):
            self.desktop.key(key)
            self.window(title)
            self.wait(f"“{title}” above the panel", lambda: self.is_above(title, PANEL))
            self.desktop.key("Escape")
            self.window(HISTORY)
        self.quit()

    def is_above(self, upper, lower):
        """Whether a window stands above another."""
        stacked = self.desktop.run("xprop", "-root", "-notype", "_NET_CLIENT_LIST_STACKING")
        order = [int(number, 16) for number in re.findall(r"0x[0-9a-f]+", stacked)]
        above, below = (order.index(number_of_window(self.desktop, title))
                        for title in (upper, lower))
        return above > below

    def activate(self, action, title):
        self.program.action(action)
        self.desktop.wait_for_window(title)

        def is_active():
            return any(window.name == title and "active" in window.states
                       for window in self.application.children)

        if title != PANEL:
            self.wait(f"“{title}” to be active", is_active)
            return
        # The panel takes the keyboard focus only when it is clicked.
        self.application.wait_for("text", "Caption Text").click()
        self.wait("the keyboard in the panel", is_active)

    def select_saved_session(self):
        history = self.open_window("show-history", HISTORY)
        history.wait_for("list item", "Caption Session, 1 sentence").click()
        self.wait("its text", lambda: "One line." in history.find("text", "Caption Text").text)
        return history

    def reveal_saved_session(self):
        file = self.save_session()
        self.launch()
        history = self.select_saved_session()
        item = history.find("list item", "Caption Session, 1 sentence")
        item.click(button=3)
        self.desktop.run("xdotool", "key", "Down", "Return")
        return file


class SmallScreen(ProgramCase):
    screen = "1024x600"

    def test_every_window_can_be_seen_with_its_title_bar(self):
        self.launch()
        for action, title in (("show-settings", SETTINGS), ("show-history", HISTORY),
                              ("show-about", ABOUT), ("check-for-updates", UPDATES)):
            with self.subTest(title):
                window = self.open_window(action, title)
                left, right, top, bottom = self.frame(title)
                self.assertGreater(top, 0)
                x, y, width, height = window.extents
                self.assertGreaterEqual(min(x - left, y - top), 0)
                self.assertLessEqual(x + width + right, 1024)
                self.assertLessEqual(y + height + bottom, 600)
        self.quit()

    def frame(self, title):
        """The frame of a window: left, right, top and bottom, in pixels."""
        extents = self.desktop.run("xprop", "-id", number_of_window(self.desktop, title), "-notype",
                                   "_NET_FRAME_EXTENTS")
        return [int(number) for number in re.findall(r"\d+", extents)]


def without_slash(address):
    return address.rstrip("/")


def number_of_window(desktop, title):
    """The X11 id of the visible window with this title."""
    return int(desktop.run("xdotool", "search", "--onlyvisible", "--name", f"^{title}$"))


if __name__ == "__main__":
    unittest.main()
