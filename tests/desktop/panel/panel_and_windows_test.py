"""The program's own windows are readable although the panel is kept on top."""

import re
import unittest

from program_case import ProgramCase
from window_titles import ABOUT, EXPORT, HISTORY, PANEL, SETTINGS, UPDATES

OTHER = "Another program"


class OnASmallScreen(ProgramCase):
    screen = "1280x800"

    def setUp(self):
        super().setUp()
        self.program.write_preferences(statusItemExplained=True)
        self.launch()
        self.program.action("show-panel")
        self.wait("the panel above other windows", self.panel_is_on_top)

    def test_every_window_is_readable_when_it_opens(self):
        for action, title in (("show-settings", SETTINGS), ("show-history", HISTORY),
                              ("show-about", ABOUT), ("check-for-updates", UPDATES)):
            with self.subTest(title):
                self.open_window(action, title)
                self.wait(f"“{title}” to be readable", lambda: self.is_readable(title))
                self.wait("the window to have the keyboard", lambda: title in self.desktop.run(
                    "xdotool", "getactivewindow", "getwindowname"))
                self.desktop.key("alt+F4")
                self.wait("the window to close", lambda: title not in self.desktop.windows())
                self.wait("the panel above other windows", self.panel_is_on_top)
        self.quit()

    def test_the_panel_is_on_top_again_of_other_programs(self):
        self.open_window("show-settings", SETTINGS)
        self.wait("the panel to yield", lambda: not self.panel_is_on_top())
        self.desktop.start(["xmessage", "-title", OTHER, "-geometry", "400x300+400+450", "text"])
        self.desktop.wait_for_window(OTHER)
        self.desktop.run("xdotool", "search", "--name", OTHER, "windowactivate")
        self.wait("the panel above other windows", self.panel_is_on_top)
        self.wait("the panel above the other program", lambda: self.is_above(PANEL, OTHER))
        # Settings that are opened again come up readable again.
        self.open_window("show-settings", SETTINGS)
        self.wait("the settings to be readable", lambda: self.is_readable(SETTINGS))
        self.quit()

    def test_the_panel_yields_only_to_windows_that_overlap_it(self):
        self.open_window("show-about", ABOUT)
        self.wait("the panel to yield", lambda: not self.panel_is_on_top())
        self.move(ABOUT, 10, 40)
        self.move(PANEL, 600, 500)
        self.wait("the panel above other windows", self.panel_is_on_top)
        self.move(ABOUT, 500, 200)
        self.wait("the window to be readable", lambda: self.is_readable(ABOUT))
        # A click brings the panel to the front.
        self.desktop.run("xdotool", "mousemove", 1100, 700, "click", 1)
        self.wait("the panel above the window", lambda: self.is_above(PANEL, ABOUT))
        self.program.action("show-about")
        self.wait("the window to be readable", lambda: self.is_readable(ABOUT))
        self.quit()

    def test_small_windows_leave_the_captions_free(self):
        self.open_window("check-for-updates", UPDATES)
        _, top, _, height = self.place(UPDATES)
        self.assertLessEqual(top + height, self.place(PANEL)[1])
        self.assertTrue(self.panel_is_on_top())
        self.quit()

    def test_the_export_of_a_saved_session_is_readable(self):
        self.save_session()
        history = self.open_window("show-history", HISTORY)
        history.wait_for("list item", "Caption Session, 1 sentence").click()
        self.wait("its text", lambda: "One line." in history.find("text", "Caption Text").text)
        self.desktop.key("ctrl+shift+s")
        self.window(EXPORT)
        self.wait("the window to be readable", lambda: self.is_readable(EXPORT))
        self.quit()

    def test_a_hidden_panel_stays_hidden(self):
        self.program.action("toggle-panel")
        self.program.wait_for_state("toggle-panel", False)
        self.open_window("show-settings", SETTINGS)
        self.assertNotIn(PANEL, self.desktop.windows())
        self.program.action("show-panel")
        self.desktop.wait_for_window(PANEL)
        self.quit()

    def is_readable(self, title):
        """Whether the panel covers no part of the window."""
        left, top, width, height = self.place(title)
        panel_left, panel_top, panel_width, panel_height = self.place(PANEL)
        overlaps = (left < panel_left + panel_width and panel_left < left + width
                    and top < panel_top + panel_height and panel_top < top + height)
        return not overlaps or self.is_above(title, PANEL)

    def panel_is_on_top(self):
        return "_NET_WM_STATE_ABOVE" in self.desktop.run("xprop", "-id", self.number(PANEL),
                                                         "_NET_WM_STATE")

    def is_above(self, upper, lower):
        stacked = self.desktop.run("xprop", "-root", "-notype", "_NET_CLIENT_LIST_STACKING")
        order = [int(number, 16) for number in re.findall(r"0x[0-9a-f]+", stacked)]
        return order.index(int(self.number(upper))) > order.index(int(self.number(lower)))

    def place(self, title):
        shell = self.desktop.run("xdotool", "getwindowgeometry", "--shell", self.number(title))
        values = dict(line.split("=") for line in shell.splitlines())
        return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def move(self, title, left, top):
        self.desktop.run("xdotool", "windowmove", self.number(title), left, top)

    def number(self, title):
        """The X11 id of the visible window with this title. Waits for the window."""
        return self.wait(f"the window “{title}”", lambda: self.desktop.run(
            "xdotool", "search", "--onlyvisible", "--name", f"^{title}$").split())[0]


class OnAWideScreen(OnASmallScreen):
    screen = "1366x768"


if __name__ == "__main__":
    unittest.main()
