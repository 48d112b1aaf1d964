"""The real program in a Wayland session, where it runs on XWayland."""

import unittest

from accessibility import Accessibility
from spoken_case import EXECUTABLE
from trays import BusTray, open_menu
from velun_program import APPLICATION, VelunProgram
from wayland_desktop import WaylandDesktop
from wayland_input import WaylandInput
from window_titles import PANEL

OTHER = "Another program"
HEADER_HEIGHT = 44  # pixels
EDGE = 24  # pixels from a corner of the screen, where there is no window
STEP = 3  # pixels that the pointer moves at a time
DISTANCE = 100  # pixels that the panel is dragged


class WaylandTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(WaylandDesktop())
        self.accessibility = self.enterContext(Accessibility(self.desktop))
        self.tray = BusTray(self.desktop)
        self.addCleanup(self.tray.close)
        self.program = VelunProgram(self.desktop, EXECUTABLE)

    def show_panel(self):
        self.program.launch()
        self.application = self.accessibility.application(APPLICATION)
        self.program.action("show-panel")
        self.application.wait_for("text", "Caption Text")


class OnXWayland(WaylandTest):
    def setUp(self):
        super().setUp()
        self.input = WaylandInput(self.desktop)
        self.addCleanup(self.input.close)
        self.show_panel()
        self.desktop.wait_for_window(PANEL)

    def test_the_panel_is_above_and_on_every_desktop(self):
        self.desktop.start(["xmessage", "-title", OTHER, "-geometry", "400x300+400+450", "text"])
        self.desktop.wait_for_window(OTHER)
        self.assertEqual(self.topmost(), PANEL)
        self.assertIn("= 4294967295", self.desktop.run("xprop", "-id", self.panel(),
                                                       "_NET_WM_DESKTOP"))
        self.program.action("toggle-keep-on-top")
        self.program.wait_for_state("toggle-keep-on-top", False)
        self.desktop.run("xdotool", "search", "--name", OTHER, "windowactivate")
        self.desktop.wait("the other program on top", lambda: self.topmost() == OTHER)

    def test_the_programs_own_windows_are_above_the_panel(self):
        self.program.action("show-settings")
        self.desktop.wait("the settings on top", lambda: self.topmost() == "Velun Settings")
        self.desktop.start(["xmessage", "-title", OTHER, "-geometry", "400x300+400+450", "text"])
        self.desktop.wait_for_window(OTHER)
        self.desktop.run("xdotool", "search", "--name", OTHER, "windowactivate")
        self.desktop.wait("the panel on top again", lambda: self.topmost() == PANEL)

    def test_the_pointer_shows_the_header_drags_the_panel_and_opens_menus(self):
        self.assertFalse(self.start_button().is_showing)
        left, top = self.place()
        self.enter_panel()
        self.drag_header()
        self.click_on(self.application.find("button menu", "Session & Settings"))
        self.desktop.wait("the menu", lambda: open_menu(self.desktop))
        self.desktop.key("Escape")
        self.desktop.wait("the end of the menu", lambda: not open_menu(self.desktop))

        # To a place outside of all X11 windows, where the X server gets no pointer events.
        self.input.move_to(EDGE, EDGE)
        self.desktop.wait("the header to go", lambda: not self.start_button().is_showing)
        self.program.action("restore-position")
        self.desktop.wait("the panel to return", lambda: self.place() == (left, top))

    def test_settings_promise_hiding_while_the_screen_is_shared(self):
        self.program.action("show-settings")
        self.application.wait_for("list item", "Captions").select()
        self.assertEqual(self.capture_notes(), ["This desktop offers no way"])
        self.desktop.start_sound()
        self.program.action("show-settings")
        self.desktop.wait("the promise", lambda: self.capture_notes() == [
            "Keeps the caption window off", "This desktop cannot exclude a single window"])

    def capture_notes(self):
        """The beginnings of the visible notes about screen sharing."""
        settings = self.application.wait_for(name="Velun Settings")
        texts = [label.name for label in settings.find_all("label") if label.is_showing]
        return [known for known in ("Keeps the caption window off", "Other people may see",
                                    "This desktop cannot exclude a single window",
                                    "This desktop excludes", "This desktop offers no way")
                if any(text.startswith(known) for text in texts)]

    def test_the_tray_works_as_on_x11(self):
        self.tray.wait_for_icon()
        self.tray.click("Hide Caption Window")
        self.program.wait_for_state("toggle-panel", False)
        self.tray.click("Quit Velun")
        self.assertEqual(self.program.process.wait(30), 0, self.program.log())

    def panel(self):
        return self.desktop.run("xdotool", "search", "--name", PANEL).split()[0]

    def place(self):
        shell = self.desktop.run("xdotool", "getwindowgeometry", "--shell", self.panel())
        values = dict(line.split("=") for line in shell.splitlines())
        return int(values["X"]), int(values["Y"])

    def topmost(self):
        stacking = self.desktop.run("xprop", "-root", "_NET_CLIENT_LIST_STACKING")
        return self.desktop.run("xdotool", "getwindowname", stacking.split()[-1]).strip()

    def start_button(self):
        return self.application.find("push button", "Start Captions")

    def enter_panel(self):
        left, top = self.place()
        self.input.move_to(left + 200, top + 150)
        self.desktop.wait("the header", lambda: self.start_button().is_showing)
        # The header is still being animated, and a press would miss it.
        self.desktop.wait("the whole header", lambda: self.place()[1] == top - HEADER_HEIGHT)

    def drag_header(self):
        """Drags left and up until the panel has moved far enough."""
        left, top, width, height = self.start_button().extents
        # In the middle, where the header is empty.
        self.input.move_to(left - 6 * width, top + height // 2)
        left, top = self.place()

        def follows():
            self.input.move_by(-STEP, -STEP)
            now_left, now_top = self.place()
            return now_left <= left - DISTANCE and now_top <= top - DISTANCE

        self.input.press()
        self.desktop.wait("the panel to follow", follows)
        self.input.release()

    def click_on(self, node):
        left, top, width, height = node.extents
        self.input.move_to(left + width // 2, top + height // 2)
        self.input.click()


class WithoutAnXServer(WaylandTest):
    def test_it_runs_as_a_wayland_client(self):
        del self.desktop.environment["DISPLAY"]
        # The leak sanitizer needs complete stacks to recognize a leak of the graphics driver.
        self.desktop.environment["ASAN_OPTIONS"] = "fast_unwind_on_malloc=0"
        self.show_panel()
        self.program.action("show-settings")
        self.application.wait_for(name="Velun Settings")
        self.tray.wait_for_icon()
        self.tray.click("Hide Caption Window")
        self.program.wait_for_state("toggle-panel", False)
        self.assertEqual(self.program.quit(), 0, self.program.log())


if __name__ == "__main__":
    unittest.main()
