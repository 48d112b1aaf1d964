"""The panel above another program's window that fills the screen."""

import unittest

from spoken_case import PlainCase
from window_titles import PANEL

OTHER = "Event Tester"  # the window of xev


class PanelAndFullScreen(PlainCase):
    def setUp(self):
        super().setUp()
        self.program.write_preferences(statusItemExplained=True)
        self.program.launch()
        self.desktop.wait_for_window(PANEL)

    def window(self, title):
        found = self.desktop.run("xdotool", "search", "--onlyvisible", "--name", title).split()
        return found[-1] if found else None

    def front(self):
        """The title of the window in front of all others."""
        text = self.desktop.run("xprop", "-root", "_NET_CLIENT_LIST_STACKING")
        ids = text.partition("#")[2].replace(",", " ").split()
        return self.desktop.run("xdotool", "getwindowname", ids[-1]).strip() if ids else ""

    def panel_type(self):
        return self.desktop.run("xprop", "-id", self.window(PANEL), "_NET_WM_WINDOW_TYPE")

    def fill_the_screen(self):
        """Shows the other window full screen, with the keyboard."""
        self.desktop.start(["xev", "-name", OTHER])
        other = self.desktop.wait("the other window", lambda: self.window(OTHER))
        # A window manager reads the state when a window is shown.
        self.desktop.run("xdotool", "windowunmap", "--sync", other)
        # It removes the state of a window that was hidden, and this after it.
        self.desktop.wait("the window manager", lambda: "not found" in self.desktop.run(
            "xprop", "-id", other, "WM_STATE"))
        self.desktop.run("xprop", "-id", other, "-f", "_NET_WM_STATE", "32a", "-set",
                         "_NET_WM_STATE", "_NET_WM_STATE_FULLSCREEN")
        self.desktop.run("xdotool", "windowmap", "--sync", other)
        self.desktop.run("xdotool", "windowactivate", "--sync", other)
        self.desktop.wait("full screen", lambda: "FULLSCREEN" in self.desktop.run(
            "xprop", "-id", other, "_NET_WM_STATE"))
        return other

    def test_panel_stays_in_front_while_another_window_fills_the_screen(self):
        other = self.fill_the_screen()
        self.desktop.wait("the panel in front", lambda: self.front() == PANEL)
        # Openbox would do without it, but not MATE's window manager.
        self.assertIn("TYPE_UTILITY", self.panel_type())
        # Without its level it goes behind.
        self.program.action("toggle-keep-on-top")
        self.desktop.wait("the other in front", lambda: self.front() == OTHER)
        self.assertIn("TYPE_NORMAL", self.panel_type())
        self.program.action("toggle-keep-on-top")
        self.desktop.wait("the panel in front again", lambda: self.front() == PANEL)
        # Hidden and shown anew it is there, too.
        for shown in (False, True):
            self.program.action("toggle-panel")
            self.program.wait_for_state("toggle-panel", shown)
        self.desktop.run("xdotool", "windowactivate", "--sync", other)
        self.desktop.wait("the panel in front once more", lambda: self.front() == PANEL)
        self.quit()

    def test_panel_stays_when_the_other_window_goes(self):
        other = self.fill_the_screen()
        self.desktop.wait("the panel in front", lambda: self.front() == PANEL)
        self.desktop.run("xdotool", "windowminimize", "--sync", other)
        self.desktop.wait("the panel", lambda: self.window(PANEL))
        self.desktop.run("xdotool", "windowactivate", "--sync", other)
        self.desktop.wait("the panel in front", lambda: self.front() == PANEL)
        self.desktop.run("xdotool", "windowkill", other)
        self.desktop.wait("the panel alone", lambda: self.front() == PANEL and self.window(PANEL))
        self.quit()


if __name__ == "__main__":
    unittest.main()
