"""The caption panel of the real program with the keyboard and assistive technology."""

import unittest

from spoken_case import SpokenCase
from window_titles import PANEL

HEADER = {
    "en": ("Input Source", "Save Current Session", "Translation Settings", "Start Captions",
           "Session & Settings", "Hide"),
    "ko": ("입력 소스", "현재 세션 저장", "번역 설정", "자막 시작", "세션 및 설정", "숨기기"),
}
TRANSCRIPT = {"en": "Caption Text", "ko": "자막 본문"}


class PanelAccess(SpokenCase):
    def show_panel(self, **preferences):
        self.launch(**preferences)
        self.program.action("show-panel")
        self.panel = self.application.wait_for("frame")

    def activate_panel(self):
        """Gives the panel the keyboard focus, as a click does."""
        number = self.desktop.run("xdotool", "search", "--onlyvisible", "--name", PANEL).split()[0]
        self.desktop.run("xdotool", "windowactivate", "--sync", number)
        self.desktop.wait("the keyboard in the panel", lambda: self.focused() is not None)

    def focused(self):
        return next((node for node in self.panel.walk() if node.is_focused), None)

    def press_until_focused(self, key, name):
        before = self.focused()
        self.desktop.key(key)
        self.desktop.wait(f"the keyboard at “{name}” after “{before.name}”",
                          lambda: (now := self.focused()) and now.name == name)

    def header(self):
        return [node for node in self.panel.walk() if node.role in ("push button", "button menu")
                and node.name in HEADER["en"] + HEADER["ko"]]

    def test_everything_has_its_name_and_role_in_english(self):
        self.assert_named("en")

    def test_everything_has_its_name_and_role_in_korean(self):
        self.assert_named("ko")

    def assert_named(self, language):
        self.show_panel(language=language)
        self.assertEqual([node.name for node in self.header()], list(HEADER[language]))
        for node in self.header():
            opens_menu = node.role == "button menu"
            self.assertIn("ShowMenu" if opens_menu else "Press", node.actions, node)
        self.assertIsNotNone(self.panel.find("text", TRANSCRIPT[language]))
        for node in self.panel.walk():
            if "focusable" in node.states:
                self.assertTrue(node.name, self.panel.tree())
                self.assertNotIn(node.role, ("filler", "unknown"), self.panel.tree())
            elif node.role == "filler":
                self.assertFalse(node.name, self.panel.tree())
        self.assertEqual(self.program.quit(), 0, self.program.log())

    def test_the_keyboard_comes_to_the_captions_also_under_the_pointer(self):
        self.show_panel()
        left, top, width, height = self.panel.extents
        self.desktop.run("xdotool", "mousemove", left + width // 2, top + height // 2)
        self.desktop.wait("the header", lambda: all(node.is_showing for node in self.header()))
        self.activate_panel()
        self.assertTrue(self.panel.find("text", TRANSCRIPT["en"]).is_focused, self.panel.tree())

    def test_the_keyboard_reaches_every_button_and_works_it(self):
        self.show_panel(statusItemExplained=True)
        self.activate_panel()
        for name in HEADER["en"]:
            self.press_until_focused("Tab", name)
            self.assertTrue(self.focused().is_showing, self.panel.tree())
        for name in ("Session & Settings", "Start Captions"):
            self.press_until_focused("shift+Tab", name)
        self.desktop.key("Return")
        self.program.wait_for_state("running", True)
        self.desktop.wait("the button to stop", lambda: self.focused().name == "Stop Captions")
        self.desktop.key("space")
        self.program.wait_for_state("running", False)
        self.press_until_focused("Tab", "Session & Settings")
        for opens in ("Return", "space"):
            self.desktop.key(opens)
            self.desktop.wait("the menu", lambda: "pressed" in self.focused().states)
            self.desktop.key("Escape")
            self.desktop.wait("its end", lambda: "pressed" not in self.focused().states)
        self.press_until_focused("Tab", "Hide")
        self.desktop.key("Return")
        self.program.wait_for_state("toggle-panel", False)

    def test_assistive_technology_finds_and_chooses_what_the_menus_offer(self):
        self.show_panel(statusItemExplained=True)
        self.choose("Input Source", "Microphone")
        self.program.wait_for_state("input", "microphone")
        menu = self.open("Translation Settings")
        menu.wait_for("menu item", "Translation Language…\tKorean").press()
        self.wait_for_closed(menu)
        chooser = self.application.wait_for(name="Translation Language")
        search = chooser.wait_for("text", "Search Languages")
        self.desktop.wait("the keyboard", lambda: search.is_focused)
        self.desktop.run("xdotool", "type", "deutsch")
        german = chooser.wait_for("list")
        self.desktop.wait("German", lambda: len(german.children) == 1)
        self.assertRegex(german.children[0].name, r"^German, (Ready|Download · \d+ MB)$")
        self.desktop.key("Return")
        self.desktop.wait("the language", lambda: self.program.read_preferences().get("targetID") == "de")
        self.desktop.wait("the list to close", lambda: not chooser.is_showing)
        self.choose("Session & Settings", "Settings…")
        self.application.wait_for("frame", "Velun Settings")

    def open(self, button):
        """The menu of a button of the header, opened by its action: again if Qt closes it at once.
        Qt does so when it learns that the window before has lost the keyboard, which it does some
        time after that window is closed.
        """
        node = self.panel.find("button menu", button)

        def opened():
            menu = node.find("popup menu")
            if menu.is_showing:
                return menu
            node.do("ShowMenu")
            return None
        return self.desktop.wait(f"the menu of “{button}”", opened)

    def choose(self, button, item):
        menu = self.open(button)
        menu.wait_for("menu item", item).press()
        self.wait_for_closed(menu)

    def wait_for_closed(self, menu):
        self.desktop.wait("the menu to close", lambda: not menu.is_showing)

    def test_what_is_said_is_announced_as_text_that_comes(self):
        self.show_panel()
        events = self.accessibility.watch("object:text-changed", "TextChanged")
        self.start_captions()
        self.speak()
        # The mark at the end may come after its word.
        last_word = self.transcript().split()[-1].rstrip(".?!")
        self.desktop.wait("the line to be announced", lambda: last_word in events.read_text())
        self.assertIn('string "insert"', events.read_text())

    def test_what_went_wrong_is_told_as_the_status(self):
        self.show_panel()
        status = self.panel.find("notification", "Status")
        self.make_saving_fail()
        self.start_captions()
        self.speak()
        # On a busy machine, running captions say that recognition is falling behind.
        self.stop_captions()
        before = status.description
        # What screen readers speak of without being asked.
        events = self.accessibility.watch("object:state-changed", "StateChanged")
        self.program.action("save-session")
        self.desktop.wait("the failure", lambda: status.description not in ("", before))
        self.desktop.wait("its announcement", lambda: status.told(events, "showing"))
        self.assertEqual(status.told(events, "showing"), 1, events.read_text())


if __name__ == "__main__":
    unittest.main()
