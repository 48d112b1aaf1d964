"""Clicks through the panel into the window beneath it, and the ways back."""

import unittest

from spoken_case import EXECUTABLE, PlainCase
from window_titles import PANEL

BENEATH = "Window Beneath"


class ClickThrough(PlainCase):
    def setUp(self):
        super().setUp()
        self.desktop.run("xdotool", "mousemove", 5, 5)
        self.start_other_window(BENEATH, "-event", "button", "-geometry", "1200x700+20+20",
                                log="beneath")

    def launch(self, **preferences):
        self.program.write_preferences(statusItemExplained=True, **preferences)
        self.program.launch()
        self.desktop.wait_for_window(PANEL)

    def presses(self):
        """How often the window beneath was clicked."""
        return self.desktop.log_path("beneath").read_text().count("ButtonPress")

    def frame(self):
        number = self.desktop.run("xdotool", "search", "--onlyvisible", "--name", PANEL).split()[0]
        text = self.desktop.run("xdotool", "getwindowgeometry", "--shell", number)
        return {name: int(value) for name, value in
                (line.split("=") for line in text.split()) if name != "WINDOW"}

    def click_the_panel(self):
        frame = self.frame()
        self.desktop.run("xdotool", "mousemove", frame["X"] + frame["WIDTH"] // 2,
                         frame["Y"] + frame["HEIGHT"] // 2, "click", 1)

    def active(self):
        return self.desktop.run("xdotool", "getactivewindow", "getwindowname").strip()

    def expect_through(self):
        before = self.presses()
        self.click_the_panel()
        self.desktop.wait("the click beneath", lambda: self.presses() > before)
        self.desktop.wait("the window beneath to be active", lambda: self.active() == BENEATH)
        self.desktop.wait("no header", lambda: self.frame()["HEIGHT"] == 250)

    def expect_at_the_panel(self):
        before = self.presses()
        self.click_the_panel()
        self.desktop.wait("the panel to be active", lambda: self.active() == PANEL)
        self.desktop.wait("the header", lambda: self.frame()["HEIGHT"] == 294)
        self.assertEqual(self.presses(), before)

    def test_the_action_passes_clicks_to_the_window_beneath(self):
        self.launch()
        self.expect_at_the_panel()
        self.program.action("toggle-click-through")
        self.program.wait_for_state("toggle-click-through", True)
        self.expect_through()
        self.program.action("toggle-click-through")
        self.program.wait_for_state("toggle-click-through", False)
        self.expect_at_the_panel()
        self.quit()

    def test_it_lasts_when_the_panel_is_hidden_and_shown(self):
        self.launch()
        self.program.action("toggle-click-through")
        for shown in (False, True):
            self.program.action("toggle-panel")
            self.program.wait_for_state("toggle-panel", shown)
        self.desktop.wait_for_window(PANEL)
        self.expect_through()
        self.quit()

    def test_a_second_start_makes_a_panel_without_a_tray_clickable(self):
        self.launch(clickThrough=True)
        self.expect_through()
        self.desktop.run(EXECUTABLE)
        self.program.wait_for_state("toggle-click-through", False)
        self.expect_at_the_panel()
        self.quit()

    def test_the_key_ends_it_in_a_window_of_the_program(self):
        self.launch(clickThrough=True)
        self.program.action("show-settings")
        self.desktop.wait("the settings", lambda: self.active() == "Velun Settings")
        self.desktop.key("ctrl+shift+l")
        self.program.wait_for_state("toggle-click-through", False)
        self.quit()


if __name__ == "__main__":
    unittest.main()
