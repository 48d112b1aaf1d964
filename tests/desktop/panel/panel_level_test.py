"""The panel's level and desktops with a slow window manager."""

import signal
import unittest

from spoken_case import PlainCase
from window_titles import PANEL


class PanelLevel(PlainCase):
    def properties(self):
        found = self.desktop.run("xdotool", "search", "--onlyvisible", "--name", PANEL).split()
        return self.desktop.run("xprop", "-id", found[0], "_NET_WM_STATE",
                                "_NET_WM_DESKTOP") if found else ""

    def wait_for_level(self, above):
        def has_it():
            properties = self.properties()
            return ("_NET_WM_STATE_SKIP_TASKBAR" in properties and "4294967295" in properties
                    and ("_NET_WM_STATE_ABOVE" in properties) == above)

        self.desktop.wait("the panel’s states", has_it)

    def show_anew(self):
        """Hides and shows the panel before the window manager reacts."""
        self.desktop.window_manager.send_signal(signal.SIGSTOP)
        for shown in (False, True):
            self.program.action("toggle-panel")
            self.program.wait_for_state("toggle-panel", shown)
        self.desktop.window_manager.send_signal(signal.SIGCONT)

    def test_a_panel_hidden_and_shown_at_once_keeps_its_states(self):
        self.program.write_preferences(statusItemExplained=True)
        self.program.launch()
        self.wait_for_level(above=True)
        self.show_anew()
        self.wait_for_level(above=True)
        self.program.action("toggle-keep-on-top")
        self.wait_for_level(above=False)
        self.show_anew()
        self.wait_for_level(above=False)
        self.quit()


if __name__ == "__main__":
    unittest.main()
