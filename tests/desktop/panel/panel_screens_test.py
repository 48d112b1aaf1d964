"""The panel on two screens, and after one of them was removed."""

import re
import unittest

from private_desktop import PrivateDesktop
from spoken_case import EXECUTABLE, PlainCase
from velun_program import VelunProgram
from window_titles import PANEL

SIZE = (560, 250)


class PanelScreens(PlainCase):
    def setUp(self):
        self.desktop = self.enterContext(PrivateDesktop("2560x800"))
        self.program = VelunProgram(self.desktop, EXECUTABLE)
        # The display has one output, of which two monitors are made.
        for name, left, output in (("left", 0, "screen"), ("right", 1280, "none")):
            self.desktop.run("xrandr", "--setmonitor", name, f"1280/340x800/210+{left}+0", output)
        # Over the panel, the pointer would open the header.
        self.desktop.run("xdotool", "mousemove", 5, 5)
        self.assertIn("Monitors: 2", self.desktop.run("xrandr", "--listmonitors"))

    def launch_with_panel_at(self, left, top):
        frame = " ".join(str(number) for number in (left, top, *SIZE))
        self.program.write_preferences(statusItemExplained=True, CaptionPanel=frame)
        self.program.launch()
        # The panel shows itself only without a tray.
        self.program.action("show-panel")
        self.desktop.wait_for_window(PANEL)

    def wait_for_panel_at(self, left, top):
        def is_there():
            number = self.desktop.run("xdotool", "search", "--onlyvisible", "--name", PANEL).split()
            text = self.desktop.run("xdotool", "getwindowgeometry", "--shell", *number[:1])
            return (left, top, *SIZE) == tuple(int(number) for number in re.findall(
                r"^(?:X|Y|WIDTH|HEIGHT)=(-?\d+)", text, re.M))

        self.desktop.wait(f"the panel at {left}, {top}", is_there)

    def test_it_stays_on_its_screen(self):
        self.launch_with_panel_at(1900, 300)
        self.wait_for_panel_at(1900, 300)
        self.program.action("restore-position")
        self.wait_for_panel_at(1280 + (1280 - SIZE[0]) // 2, 800 - 60 - SIZE[1])
        self.quit()

    def test_it_moves_to_the_nearest_existing_screen(self):
        self.launch_with_panel_at(3000, 900)
        self.wait_for_panel_at(2560 - SIZE[0], 800 - SIZE[1])
        self.quit()

    def test_it_is_shown_on_the_remaining_screen(self):
        self.launch_with_panel_at(1900, 300)
        self.program.action("show-settings")
        self.desktop.wait("the keyboard in the settings", lambda: "Velun Settings"
                          in self.desktop.run("xdotool", "getactivewindow", "getwindowname"))
        self.program.action("toggle-panel")
        self.program.wait_for_state("toggle-panel", False)
        for name in ("right", "left"):
            self.desktop.run("xrandr", "--delmonitor", name)
        self.desktop.run("xrandr", "--setmonitor", "left", "1280/340x800/210+0+0", "screen")
        # The display reports the key after the change of the monitors.
        self.desktop.key("ctrl+l")
        self.program.wait_for_state("toggle-panel", True)
        self.wait_for_panel_at(1280 - SIZE[0], 300)
        self.quit()

    def test_it_leaves_a_removed_screen(self):
        self.launch_with_panel_at(1900, 300)
        self.wait_for_panel_at(1900, 300)
        self.desktop.run("xrandr", "--delmonitor", "right")
        self.wait_for_panel_at(1280 - SIZE[0], 300)
        self.quit()

    def test_it_comes_back_with_its_screen(self):
        self.launch_with_panel_at(100, 100)
        self.wait_for_panel_at(100, 100)
        self.program.action("move-panel-to-next-screen")
        self.wait_for_panel_at(1380, 100)
        both = "CaptionPanel 1280x800+0+0 1280x800+1280+0"
        self.desktop.wait("the place to be kept",
                          lambda: self.program.read_preferences().get(both) == "1380 100 560 250")
        self.desktop.run("xrandr", "--delmonitor", "right")
        self.wait_for_panel_at(1280 - SIZE[0], 100)
        self.desktop.run("xrandr", "--setmonitor", "right", "1280/340x800/210+1280+0", "none")
        self.wait_for_panel_at(1380, 100)
        self.quit()

    def test_it_stays_clear_of_a_dock(self):
        self.desktop.start(["trayer", "--edge", "bottom", "--widthtype", "percent", "--width",
                            "100", "--height", "50", "--SetDockType", "true", "--SetPartialStrut",
                            "true"])
        self.desktop.wait("the area without the dock",
                          lambda: "750" in self.desktop.run("xprop", "-root", "_NET_WORKAREA"))
        self.launch_with_panel_at(100, 700)
        self.wait_for_panel_at(100, 750 - SIZE[1])
        # From the nearest of the nine places to the ones after it.
        self.program.action("move-panel")
        self.wait_for_panel_at(12, 750 - 12 - SIZE[1])
        self.program.action("move-panel")
        self.wait_for_panel_at((1280 - SIZE[0]) // 2, 750 - 12 - SIZE[1])
        self.quit()


if __name__ == "__main__":
    unittest.main()
