"""The real program in both kinds of tray: what clicks do, and trays that come and go."""

import unittest

from spoken_case import PlainCase, SpokenCase
from trays import BusTray, EmbeddedTray, open_menu
from window_titles import PANEL


class ClickRules:
    """A plain click shows the panel while captions run without it, and opens the menu otherwise."""

    def test_clicks(self):
        self.launch()
        self.tray.wait_for_icon()
        self.plain_click()
        self.expect_menu()
        # Its first item, reached with the keyboard.
        self.desktop.run("xdotool", "key", "Down", "Return")
        self.program.wait_for_state("running", True)
        self.program.wait_until_capturing()
        self.assertEqual(self.program.state()["toggle-panel"], True)

        self.plain_click()
        self.expect_menu()
        self.close_menu()

        self.program.action("toggle-panel")
        self.program.wait_for_state("toggle-panel", False)
        for click in (self.other_click, self.control_click):
            click()
            self.expect_menu()
            self.close_menu()
            self.assertEqual(self.program.state()["toggle-panel"], False)

        self.plain_click()
        self.program.wait_for_state("toggle-panel", True)
        self.assertFalse(open_menu(self.desktop))

        self.program.action("toggle-panel")
        self.program.wait_for_state("toggle-panel", False)
        self.double_click()
        self.program.wait_for_state("toggle-panel", True)
        self.expect_menu()
        self.close_menu()

    def test_a_tray_that_goes_away_and_comes_back(self):
        self.launch()
        self.tray.wait_for_icon()
        self.tray.stop()
        # Launching again reaches it meanwhile.
        self.desktop.start([self.program.executable])
        self.program.wait_for_state("toggle-panel", True)
        self.tray.start()
        self.tray.wait_for_icon()
        self.plain_click()
        self.expect_menu()
        self.close_menu()
        self.program.action("quit")
        self.assert_ends()

    def expect_menu(self):
        self.desktop.wait("the menu", lambda: open_menu(self.desktop))

    def close_menu(self):
        self.desktop.key("Escape")
        self.desktop.wait("the menu to close", lambda: not open_menu(self.desktop))


class InAnEmbeddingTray(ClickRules, SpokenCase):
    TRAY = EmbeddedTray

    def test_the_menu_is_walked_with_the_keyboard(self):
        self.launch()
        self.other_click()
        self.expect_menu()
        self.desktop.run("xdotool", "key", "Down", "Down", "Down", "Return")
        self.program.wait_for_state("input", "microphone")
        self.other_click()
        self.expect_menu()
        self.desktop.run("xdotool", "key", "Up", "Return")
        self.assert_ends()

    def plain_click(self):
        self.tray.click()

    def double_click(self):
        self.tray.click(times=2)

    def control_click(self):
        self.tray.click(key="ctrl")

    def other_click(self):
        self.tray.click(button=3)


class OnTheBus(ClickRules, SpokenCase):
    TRAY = BusTray

    def plain_click(self):
        self.tray.activate()

    def double_click(self):
        self.tray.activate()
        self.tray.activate()

    def control_click(self):
        self.desktop.run("xdotool", "keydown", "ctrl")
        self.tray.activate()
        self.expect_menu()
        self.desktop.run("xdotool", "keyup", "ctrl")

    def other_click(self):
        self.tray.context()


class Without(PlainCase):
    def test_the_panel_is_shown_and_explains_why_once(self):
        self.program.launch()
        self.desktop.wait_for_window(PANEL)
        self.desktop.wait_for_window("Velun")
        self.quit()
        self.program.launch()
        self.desktop.wait_for_window(PANEL)
        self.assertNotIn("Velun", self.desktop.windows())
        self.quit()

    def test_a_later_tray_gets_the_icon(self):
        self.program.launch()
        self.desktop.wait_for_window(PANEL)
        EmbeddedTray(self.desktop).wait_for_icon()
        self.quit()

    def test_a_later_tray_on_the_bus_gets_the_icon(self):
        self.program.launch()
        self.desktop.wait_for_window(PANEL)
        tray = BusTray(self.desktop)
        self.addCleanup(tray.close)
        tray.wait_for_icon()
        self.assertIn("Hide Caption Window", tray.menu())
        self.quit()

    def test_with_both_the_bus_is_preferred(self):
        embedded = EmbeddedTray(self.desktop)
        tray = BusTray(self.desktop)
        self.addCleanup(tray.close)
        self.program.launch()
        tray.wait_for_icon()
        self.assertIn("Start Captions", tray.menu())
        self.assertFalse(embedded.icon())
        self.quit()


if __name__ == "__main__":
    unittest.main()
