"""Keys of the program that work while another program has the keyboard, on X11."""

import unittest

from spoken_case import PlainCase

OTHER = "Other Window"


class Shortcuts(PlainCase):
    def setUp(self):
        super().setUp()
        self.start_other_window(OTHER, "-event", "keyboard", log="other")

    def launch(self, **preferences):
        self.program.write_preferences(statusItemExplained=True, **preferences)
        self.program.launch()

    def activate_other(self):
        number = self.desktop.run("xdotool", "search", "--onlyvisible", "--name", OTHER).split()[0]
        self.desktop.run("xdotool", "windowactivate", "--sync", number)
        self.desktop.wait("the other window to be active", lambda: OTHER
                          in self.desktop.run("xdotool", "getactivewindow", "getwindowname"))

    def test_the_keys_reach_the_program_in_every_window(self):
        self.launch(**{"shortcut toggle-panel": "Ctrl+Alt+V",
                       "shortcut toggle-click-through": "Meta+F5"})
        self.program.wait_for_state("toggle-panel", True)
        self.activate_other()
        for shown in (False, True):
            self.desktop.key("ctrl+alt+v")
            self.program.wait_for_state("toggle-panel", shown)
        self.desktop.key("super+F5")
        self.program.wait_for_state("toggle-click-through", True)
        # With Num Lock too.
        self.desktop.key("Num_Lock")
        self.activate_other()
        self.desktop.key("super+F5")
        self.program.wait_for_state("toggle-click-through", False)
        self.quit()

    def test_without_chosen_keys_nothing_is_taken(self):
        self.launch()
        self.program.wait_for_state("toggle-panel", True)
        self.activate_other()
        self.desktop.key("ctrl+alt+v")
        log = self.desktop.log_path("other")
        self.desktop.wait("the key in the other window",
                          lambda: "keysym 0x76, v" in log.read_text())
        self.assertEqual(self.program.state()["toggle-panel"], True)
        self.quit()


if __name__ == "__main__":
    unittest.main()
