"""The library's windows with the keyboard only, and the accessible names of all controls."""

import unittest

from library_case import LibraryCase
from window_titles import HISTORY

# What a control that takes the keyboard can be.
ROLES = {"push button", "button menu", "check box", "combo box", "text", "list", "list item",
         "label"}


class KeyboardCase(LibraryCase):
    def key(self, *keys):
        self.desktop.run("xdotool", "key", *keys)

    def type(self, text):
        self.desktop.run("xdotool", "type", "--delay", "5", text)

    @staticmethod
    def title_of(node):
        """The name of a control or of its label."""
        return node.label or node.name

    def focused(self, window):
        """The innermost control that has the keyboard. Rows say so of themselves even while their list
        does not have it.
        """
        holders = [node for node in window.walk()
                   if {"focused", "focusable", "showing"} <= node.states
                   and node.role != "list item"]
        return holders[-1] if holders else None

    def wait_for_focus(self, window, title):
        def is_there():
            holder = self.focused(window)
            return holder and self.title_of(holder) == title

        self.wait(f"the keyboard at “{title}”", is_there)

    def tour(self, window, stops):
        """Follows the tab key through the window, and back."""
        for title in stops:
            self.wait_for_focus(window, title)
            self.key("Tab")
        self.wait_for_focus(window, stops[0])
        for title in reversed(stops):
            self.key("shift+Tab")
            self.wait_for_focus(window, title)

    def tab_to(self, window, title):
        for _ in range(30):
            holder = self.focused(window)
            if holder and self.title_of(holder) == title:
                return holder
            self.key("Tab")
            self.wait("the next stop", lambda: self.focused(window) not in (None, holder))
        self.fail(f"The tab key never reaches “{title}” in\n{window.tree()}")


class Library(KeyboardCase):
    def setUp(self):
        super().setUp()
        self.open_library()
        self.wait_for_focus(self.library, "Search Sessions")

    def test_the_tab_key_goes_from_the_search_through_the_transcript_to_the_commands(self):
        self.select("Evening talk")
        self.tour(self.library, [
            "Search Sessions", "Saved Sessions", "Show", "Translation Language", "Copy All",
            "Caption Text", "Show/Hide Sidebar", "Sort and Filter", "Delete", "Export", "More"])
        self.quit()

    def test_searching_choosing_and_deleting(self):
        self.type("LECTURE")
        self.wait_for_titles("Biology lecture", "Old lecture")
        self.key("Down", "Down")
        self.wait("a selection", lambda: self.selected() == ["Biology lecture"])
        self.key("Down")
        self.wait("the next", lambda: self.selected() == ["Old lecture"])
        self.wait_for_transcript(lambda text: "A cell has a wall." in text)
        self.key("ctrl+BackSpace")
        self.wait_for_titles("Biology lecture")
        self.wait_for_selection("Biology lecture")
        self.key("Delete")
        self.library.wait_for("notification", "No Results")
        self.assertEqual(len(list((self.desktop.home / "data/Trash/files").iterdir())), 2)
        self.quit()

    def test_the_delete_key_in_the_search_deletes_no_session(self):
        self.select("Evening talk")
        self.type("even")
        self.key("ctrl+BackSpace")
        self.wait_for_titles("Evening talk", "Biology lecture", "Team call", "Budget 2025/26",
                             "Old lecture", "Caption Session")
        self.assertTrue(all(path.exists() for path in self.files))
        self.quit()

    def test_finding_in_the_transcript(self):
        self.key("Down", "Down")
        self.wait_for_selection("Evening talk")
        self.key("ctrl+f")
        self.wait_for_focus(self.library, "Find in Captions")
        self.type("while")
        self.key("Escape")
        self.wait_for_focus(self.library, "Caption Text")
        self.key("ctrl+c")
        self.wait("the clipboard", lambda: self.desktop.run(
            "xclip", "-selection", "clipboard", "-o") == "while")
        self.quit()

    def test_the_sidebar_hides_and_shows(self):
        self.key("F9")
        self.wait("the list to go", lambda: not self.list().is_showing)
        self.key("F9")
        self.wait("the list", lambda: self.list().is_showing)
        self.quit()

    def test_the_context_menu_acts_on_the_current_session(self):
        self.key("Down", "Down")
        self.wait_for_selection("Evening talk")
        self.open_menu(lambda: self.key("Menu"))
        self.key("Down", "Down", "Return")
        self.window("Export Session")
        self.key("Escape")
        self.wait("the library again", lambda: "active" in self.library.states)
        self.quit()

    def test_the_more_menu_opens_and_runs(self):
        self.select("Evening talk")
        self.tab_to(self.library, "More")
        self.open_menu(lambda: self.key("space"))
        self.key("Down", "Down", "Return")
        panel = self.window("Save Session File")
        self.key("Escape")
        self.wait("the panel to go", lambda: not panel.is_showing)
        self.quit()

    def test_screen_readers_can_use_the_more_menu_and_the_menu_bar(self):
        for node, item in ((self.library.find("button menu", "More"), "Refresh"),
                           (self.library.find("menu item", "Velun"), "Settings…")):
            node.do("ShowMenu")
            menu = node.wait_for("popup menu")
            menu.wait_for("menu item", item).press()
            self.wait("the menu to close", lambda shown=menu: not shown.is_showing)
        self.window("Velun Settings")
        self.quit()

    def test_the_menu_bar_opens_with_the_alt_key(self):
        self.key("Alt_L")
        self.open_menu(lambda: self.key("Down"))
        self.key("Return")
        self.window("About Velun")
        self.quit()

    def test_pickers_and_copying(self):
        self.select("Evening talk")
        self.tab_to(self.library, "Show")
        self.key("Down")
        self.wait_for_transcript(lambda text: "Rivers" in text and "ríos" not in text)
        self.tab_to(self.library, "Copy All")
        self.key("space")
        self.wait("the clipboard", lambda: self.desktop.run(
            "xclip", "-selection", "clipboard", "-o")
                  == "Rivers find the sea.\n\nThis takes a while.")
        self.quit()

    def test_exporting_from_choice_to_file(self):
        self.key("Down", "Down")
        self.wait_for_selection("Evening talk")
        self.key("ctrl+shift+s")
        export = self.window("Export Session")
        self.tour(export, ["File Format", "Content", "Translation Language", "Show Times",
                           "Cancel", "Export…"])
        self.key("Down")
        export.wait_for("combo box", "Text (.txt)")
        self.key("Return")
        dialog = self.wait("the save dialog", lambda: next(
            (node for node in self.application.children
             if node.role == "dialog" and "active" in node.states), None))
        path = self.desktop.home / "typed.txt"
        self.wait_for_focus(dialog, "File name:")
        self.key("ctrl+a")
        self.type(str(path))
        self.key("Return")
        self.wait("the file", path.exists)
        self.wait("the window to go", lambda: not export.is_showing)
        self.assertTrue(path.read_text().startswith("Evening talk\nStarted: "))
        self.quit()


class Announcements(KeyboardCase):
    def test_a_search_without_results_is_announced(self):
        self.launch()
        events = self.accessibility.watch("object:state-changed", "StateChanged")
        self.library = self.open_window("show-history", HISTORY)
        self.row("Evening talk")
        self.type("zzz")
        notice = self.library.wait_for("notification", "No Results")
        # Not even when the window opened, before the listing.
        self.wait("its announcement", lambda: notice.told(events, "showing"))
        self.assertEqual(notice.told(events, "showing"), 1, events.read_text())
        self.key("ctrl+a", "BackSpace")
        self.select("Evening talk")
        self.key("ctrl+f")
        self.wait_for_focus(self.library, "Find in Captions")
        self.type("z")
        notice = self.library.wait_for("notification", "Not found")
        self.wait("its announcement", lambda: notice.told(events, "showing"))
        self.quit()


class Settings(KeyboardCase):
    STOPS = {"General": ["Language · 언어", "Start at Login", "Start or Stop Captions",
                         "Show or Hide the Caption Window", "Click Through Captions",
                         "Bigger Text", "Smaller Text"],
             "Captions": ["Input Source", "Device", "Recognition Language", "Numbers as digits",
                          "Names and Terms", "Install a Speaker Model…", "Font Size",
                          "Keep caption window on top", "Let clicks through the caption window",
                          "Hide caption window from screen sharing and recording"],
             "Translation": ["Live Translation", "Translation Language", "Show Translation Only"],
             "Sessions": ["Save new sessions automatically",
                          "Ask to save before a new session or quitting",
                          "Name sessions after their first sentence", "Open Sessions Folder",
                          "Offer captions to other programs", "Choose Caption File…"]}
    LIST = "Settings Pages"

    def setUp(self):
        super().setUp()
        self.launch()
        self.settings = self.open_window("show-settings", "Velun Settings")
        self.wait_for_focus(self.settings, self.LIST)

    def go_to(self, page):
        """Shows a page with the keyboard from wherever it is."""
        for _ in range(6):
            if self.settings.find("list item", page).states >= {"selected"}:
                return
            self.key("ctrl+Tab")
            self.wait_for_focus(self.settings, self.LIST)
        self.fail(f"Ctrl+Tab never reaches “{page}”")

    def test_the_tab_key_goes_through_each_page_in_its_order(self):
        for page, stops in self.STOPS.items():
            self.go_to(page)
            self.tour(self.settings, [self.LIST, *stops])
            self.key("Tab")  # off the list, where the tour ends
            self.wait_for_focus(self.settings, stops[0])
        self.quit()

    def test_choosers_and_toggles(self):
        self.key("Down")
        self.tab_to(self.settings, "Input Source")
        self.key("Down")
        self.program.wait_for_state("input", "microphone")
        self.tab_to(self.settings, "Font Size")
        self.key("End")
        self.wait_for_preference("fontSize", 30)
        self.tab_to(self.settings, "Keep caption window on top")
        self.key("space")
        self.program.wait_for_state("toggle-keep-on-top", False)
        self.go_to("Translation")
        self.tab_to(self.settings, "Translation Language")
        self.key("s", "p")
        search = self.application.wait_for("text", "Search Languages")
        self.wait("the search", lambda: search.is_focused and search.text == "sp")
        self.key("Return")
        self.wait_for_preference("targetID", "es")
        self.go_to("General")
        self.tab_to(self.settings, "Language · 언어")
        self.key("Down")
        self.settings.wait_for("list item", "번역")
        self.quit()


class Names(KeyboardCase):
    """Every focusable control has a name and a suitable role, in both languages."""

    TITLES = {"en": ("Velun — Saved Sessions", "Export Session", "Velun Settings"),
              "ko": ("Velun — 저장 기록", "세션 내보내기", "Velun 설정")}
    LISTS = {"en": "Saved Sessions", "ko": "저장 기록"}

    def check(self, language):
        self.program.write_preferences(language=language)
        self.list_name = self.LISTS[language]
        library, export, settings = self.TITLES[language]
        self.open_library(library)
        self.select("Evening talk")
        self.key("ctrl+f")
        self.check_window(self.library, least=12)
        self.key("ctrl+shift+s")
        self.check_window(self.window(export), least=5)
        self.check_window(self.open_window("show-settings", settings), least=8)
        self.quit()

    def check_window(self, window, least):
        self.assertEqual(window.role, "frame")
        # A walk asks for every font and language, which takes seconds.
        nodes = list(window.walk())
        shown = [node for node in nodes if node.is_showing]
        controls = [node for node in shown if "focusable" in node.states]
        self.assertGreaterEqual(len(controls), least)
        self.assertEqual([str(node) for node in controls
                          if not self.title_of(node) or node.role not in ROLES], [])
        buttons = [node for node in shown if node.role in ("push button", "button menu")]
        fields = {node.name for node in nodes if node.role == "text"}
        self.assertEqual([str(node) for node in buttons
                          if not node.name or node.name in fields], [])

    def test_in_english(self):
        self.check("en")

    def test_in_korean(self):
        self.check("ko")


class Korean(KeyboardCase):
    """Search, read, export and delete in Korean."""

    list_name = "저장 기록"

    def test_search_export_and_delete(self):
        self.program.write_preferences(language="ko")
        self.open_library("Velun — 저장 기록")
        self.wait("the rows", lambda: self.rows()[:4] == [
            "오늘", "Evening talk, 2문장 · 번역 포함", "어제", "Biology lecture, 1문장 · 번역 포함"])
        self.assertEqual(self.rows()[4:],
                         ["지난 7일", "Team call, 3문장", "지난 30일", "Budget 2025/26, 1문장",
                          "2024년 3월", "Old lecture, 1문장 · 번역 포함",
                          "2024년 1월", "자막 세션, 1문장 · 번역 포함"])
        self.library.wait_for("text", "기록 검색").set_text("바다를")
        self.wait_for_titles("Evening talk")
        self.select("Evening talk")
        self.wait_for_transcript(lambda text: "강은 바다를 찾아간다." in text)
        self.key("ctrl+shift+s")
        export = self.window("세션 내보내기")
        export.wait_for("combo box", label="파일 형식").choose("텍스트 (.txt)")
        export.wait_for("push button", "내보내기…").press()
        dialog = self.wait("the save dialog", lambda: next(
            (node for node in self.application.children
             if node.role == "dialog" and "active" in node.states), None))
        path = self.desktop.home / "한국어.txt"
        path.write_text("there")
        dialog.wait_for("text", label="파일 이름(N):").set_text(str(path))
        dialog.wait_for("push button", "저장(S)").press()
        question = self.wait("the question", lambda: next(
            (node for node in self.application.children
             if node.role == "alert message" and "active" in node.states), None))
        question.wait_for("label", "한국어.txt이(가) 이미 존재합니다.\n바꾸시겠습니까?")
        question.wait_for("push button", "예(Y)").press()
        self.wait("the text", lambda: path.read_text().startswith("Evening talk\n시작: "))
        self.assertIn("번역 · 한국어\n강은 바다를 찾아간다.", path.read_text())
        self.library.wait_for("push button", "삭제").press()
        self.library.wait_for("notification", "검색 결과가 없습니다")
        self.library.wait_for("text", "기록 검색").set_text("")
        self.wait("the rest", lambda: "Evening talk" not in self.titles()
                  and len(self.titles()) == 5)
        self.quit()


if __name__ == "__main__":
    unittest.main()
