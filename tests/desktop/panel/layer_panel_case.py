"""The real program in a Wayland session where the panel is a layer surface."""

import os
import shutil
import unittest

from accessibility import Accessibility
from compositors import WIDTH
from opener import Opener
from private_desktop import end
from spoken_case import EXECUTABLE
from velun_program import APPLICATION, VelunProgram

FRAME = (300, 400, 560, 250)
HEADER_HEIGHT = 44
RED, GREEN = (255, 0, 0), (0, 255, 0)
DARK = 90  # more than any part of the panel's background has over a bright window
BRIGHT = 140  # less than its text has
NEAR = 10  # points beside the panel
FAR = (20, 20)  # a place without a panel
KEY_A, KEY_B, KEY_K, KEY_ESCAPE = 30, 48, 37, 1  # the kernel's codes
KEY_COMPOSE = 100  # the right Alt key, by an option of the keyboard's layout
STEP = 6  # points that the pointer moves at a time


def moved(frame, x, y):
    left, top, width, height = frame
    return (left + x, top + y, width, height)


def grown(frame, by):
    """With the lower edge where it is."""
    left, top, width, height = frame
    return (left, top - by, width, height + by)


class LayerPanelCase(unittest.TestCase):
    COMPOSITOR = None

    def start_desktop(self, **options):
        if not shutil.which(self.COMPOSITOR.COMMAND):
            self.skipTest(f"{self.COMPOSITOR.COMMAND} is not installed")
        self.desktop = self.enterContext(self.COMPOSITOR(**options))
        self.addCleanup(lambda: self.desktop.input.close())
        self.input = self.desktop.input
        self.accessibility = self.enterContext(Accessibility(self.desktop))
        self.program = VelunProgram(self.desktop, EXECUTABLE)

    def launch(self, **preferences):
        """Without a tray, the panel is shown at the start."""
        self.input.move_to(*FAR)
        if preferences:
            self.program.write_preferences(statusItemExplained=True, **preferences)
        # Nothing that is drawn with the graphics driver is tested. It would be loaded all the same,
        # and is unloaded before the leak checker can tell that what it keeps is its own.
        self.desktop.environment["LIBGL_DRIVERS_PATH"] = "/none"
        self.program.launch()
        del self.desktop.environment["LIBGL_DRIVERS_PATH"]
        self.application = self.accessibility.application(APPLICATION)
        self.panel = self.application.wait_for("frame")

    def launch_at(self, frame=FRAME, **preferences):
        self.launch(CaptionPanel=" ".join(map(str, frame)), **preferences)
        self.wait_for_panel_at(frame)

    def start_other(self, color, *options):
        """A window of another program; the file of what reaches it."""
        log = f"other-{color}-{len(options)}"
        program = self.desktop.start([os.environ["VELUN_OTHER_WINDOW"], color, *options], log=log)
        self.addCleanup(end, program)
        return self.desktop.log_path(log)

    def wait(self, what, condition):
        return self.desktop.wait(what, condition)

    def wait_for_color(self, color, place):
        self.wait(f"{color} at {place}", lambda: self.desktop.pixel(*place) == color)

    def shows_panel(self, frame):
        """Whether the screen has the panel's text and background there."""
        rows = self.desktop.pixels(*frame[:2], frame[2] * self.desktop.scale,
                                   frame[3] * self.desktop.scale)
        has_text = any(min(color) > BRIGHT for row in rows for color in row)
        return has_text and max(rows[len(rows) - 8][len(rows[0]) // 2]) < DARK

    def wait_for_panel_at(self, frame):
        try:
            self.wait(f"the panel at {frame}",
                      lambda: self.panel.extents == frame and self.shows_panel(frame))
        except AssertionError as error:
            raise AssertionError(f"{error}; it is at {self.panel.extents}") from None

    def enter_panel(self, frame):
        """Moves the pointer into the panel, which opens the header."""
        left, top, width, height = frame
        self.input.move_to(left + width // 2, top + height // 2)
        self.wait_for_panel_at(grown(frame, HEADER_HEIGHT))

    def leave_panel(self, frame):
        self.input.move_to(*FAR)
        self.wait_for_panel_at(frame)

    def drag(self, start, x, y):
        """By a whole number of steps."""
        self.input.move_to(*start)
        self.input.press()
        steps = max(abs(x), abs(y)) // STEP
        for _ in range(steps):
            self.input.move_by(x / steps, y / steps)
        self.input.release()

    def drag_header(self, frame, x, y):
        """`frame` is the one without the header."""
        self.enter_panel(frame)
        button = self.panel.wait_for("button menu", "Translation Settings")
        _, top, _, height = button.extents
        # In the middle the header is empty.
        self.drag((frame[0] + frame[2] // 2, top + height // 2), x, y)

    def click_on(self, node):
        left, top, width, height = node.extents
        self.input.move_to(left + width // 2, top + height // 2)
        self.input.click()

    def open_menu(self, name):
        self.click_on(self.panel.wait_for("button menu", name))
        return self.application.wait_for("popup menu")

    def quit(self):
        self.assertEqual(self.program.quit(), 0, self.program.log())
        self.assertNotIn("protocol error", self.program.log())


class LayerPanelTests:
    """What is the same on every compositor."""

    def test_it_is_above_windows_and_full_screen_and_on_every_workspace(self):
        self.start_desktop()
        self.start_other("red")
        self.launch_at()
        beside = (FRAME[0] - NEAR, FRAME[1] + NEAR)
        self.wait_for_color(RED, beside)
        self.assertTrue(self.shows_panel(FRAME))
        self.start_other("lime", "--fullscreen")
        self.wait_for_color(GREEN, beside)
        self.assertTrue(self.shows_panel(FRAME))
        self.desktop.go_to_other_workspace()
        self.wait("the empty workspace", lambda: self.desktop.pixel(*beside) != GREEN)
        self.wait("the panel there", lambda: self.shows_panel(FRAME))
        self.quit()

    def test_it_is_dragged_and_returns_to_its_place(self):
        self.start_desktop()
        self.start_other("red", "--fullscreen")
        self.launch_at()
        self.drag_header(FRAME, -120, -90)
        self.leave_panel(moved(FRAME, -120, -90))
        self.quit()
        self.launch()
        self.wait_for_panel_at(moved(FRAME, -120, -90))
        self.quit()

    def test_it_is_resized_at_its_edges(self):
        self.start_desktop()
        self.start_other("red", "--fullscreen")
        self.launch_at()
        self.enter_panel(FRAME)
        left, top, width, _ = grown(FRAME, HEADER_HEIGHT)
        self.drag((left + width // 2, top + 2), 0, -60)
        taller = grown(FRAME, 60)
        self.wait_for_panel_at(grown(taller, HEADER_HEIGHT))
        self.drag((left + width - 2, top + 100), 90, 0)
        wider = (*taller[:2], taller[2] + 90, taller[3])
        self.leave_panel(wider)
        self.wait_for_color(RED, (left + 20, FRAME[1] + FRAME[3]))
        self.quit()

    def test_the_lower_edge_stays_while_the_header_opens(self):
        self.start_desktop()
        self.start_other("red", "--fullscreen")
        self.launch_at()
        # Two points inside the edge, one beside the corner, and two outside.
        column = (FRAME[0] + FRAME[2] // 2, FRAME[1] + FRAME[3] - 2)
        before = [row[0] for row in self.desktop.pixels(*column, 1, 4)]
        self.assertEqual(before[2:], [RED, RED])
        self.input.move_to(column[0], FRAME[1] + 100)
        seen = []

        def is_open():
            seen.append([row[0] for row in self.desktop.pixels(*column, 1, 4)])
            return self.panel.extents == grown(FRAME, HEADER_HEIGHT)

        self.wait("the header", is_open)
        self.assertEqual(seen, [before] * len(seen))
        self.quit()

    def test_menus_open_and_are_used(self):
        self.start_desktop()
        self.launch_at()
        self.enter_panel(FRAME)
        menu = self.open_menu("Session & Settings")
        self.input.key(KEY_ESCAPE)
        self.wait("the menu to close", lambda: not menu.is_showing)
        menu = self.open_menu("Translation Settings")
        self.click_on(next(item for item in menu.walk() if item.name.startswith("Input Language")))
        search = self.application.wait_for("text", "Search Languages")
        self.input.key(KEY_K)
        self.wait("the search", lambda: search.text == "k")
        self.input.key(KEY_ESCAPE)
        menu = self.open_menu("Session & Settings")
        self.click_on(menu.wait_for("menu item", "Settings…"))
        self.application.wait_for(name="Velun Settings")
        self.quit()

    def test_languages_are_searched_beside_it(self):
        self.start_desktop()
        self.start_other("red", "--fullscreen")
        self.launch_at()
        self.enter_panel(FRAME)
        menu = self.open_menu("Translation Settings")
        self.click_on(next(item for item in menu.walk() if item.name.startswith("Input Language")))
        search = self.application.wait_for("text", "Search Languages")
        left, top, width, height = search.extents
        self.wait("the search", lambda: self.desktop.pixel(left + width // 2, top - 3) != RED)
        self.assertEqual(self.desktop.pixel(*FAR), RED)
        self.input.key(KEY_K)
        self.wait("the letter", lambda: search.text == "k")
        self.input.move_to(*FAR)
        self.input.click()
        self.wait("the search to close", lambda: not search.is_showing)
        self.quit()

    def test_an_input_method_writes_into_the_search_for_languages(self):
        self.start_desktop()
        table = self.desktop.root / "compose"
        table.write_text('<Multi_key> <k> : "한"\n', encoding="utf-8")
        self.desktop.environment |= {"QT_IM_MODULE": "compose", "XCOMPOSEFILE": str(table)}
        self.launch_at()
        self.enter_panel(FRAME)
        menu = self.open_menu("Translation Settings")
        self.click_on(next(item for item in menu.walk() if item.name.startswith("Input Language")))
        search = self.application.wait_for("text", "Search Languages")
        for key in (KEY_COMPOSE, KEY_K, KEY_A):
            self.input.key(key)
        self.wait("both ways of typing", lambda: search.text == "한a")
        self.quit()

    def test_it_takes_the_keyboard_only_when_it_is_clicked(self):
        self.start_desktop()
        other = self.start_other("red", "--fullscreen")
        self.wait_for_color(RED, FAR)
        self.launch_at()
        self.input.key(KEY_A)
        self.wait("a letter for the other program", lambda: other.read_text() == "typed a\n")
        self.enter_panel(FRAME)
        text = self.panel.find("text", "Caption Text")
        self.click_on(text)
        self.wait("the keyboard in the panel", lambda: text.is_focused
                  and "active" in self.panel.states)
        self.input.key(KEY_A)
        self.input.move_to(*FAR)
        self.input.click()
        self.wait("the keyboard in the other program", lambda: "active" not in self.panel.states)
        self.input.key(KEY_B)
        self.wait("a letter for the other program",
                  lambda: other.read_text() == "typed a\nclicked\ntyped b\n")
        self.quit()

    def test_clicks_go_through_it_when_wished(self):
        self.start_desktop()
        other = self.start_other("red", "--fullscreen")
        self.wait_for_color(RED, FAR)
        self.launch_at(clickThrough=True)
        left, top, width, height = FRAME
        self.input.move_to(left + width // 2, top + height // 2)
        self.input.click()
        self.wait("the click beneath", lambda: other.read_text() == "clicked\n")
        self.assertEqual(self.panel.extents, FRAME)
        self.program.action("toggle-panel")
        self.wait_for_color(RED, (left + NEAR, top + 100))
        self.program.action("toggle-panel")
        self.wait_for_panel_at(FRAME)
        self.input.click()
        self.wait("another", lambda: other.read_text() == "clicked\nclicked\n")
        self.program.action("toggle-click-through")
        self.program.wait_for_state("toggle-click-through", False)
        # The compositor looks again when the pointer moves.
        opened = grown(FRAME, HEADER_HEIGHT)
        self.wait("the header", lambda: self.input.move_by(1, 0) or self.panel.extents == opened)
        self.input.click()
        self.wait("the keyboard in the panel", lambda: "active" in self.panel.states)
        self.assertEqual(other.read_text(), "clicked\nclicked\n")
        self.quit()

    def test_hidden_and_shown_it_is_where_it_was(self):
        self.start_desktop()
        self.start_other("red", "--fullscreen")
        self.launch_at()
        for _ in range(3):
            self.program.action("toggle-panel")
            self.wait_for_color(RED, (FRAME[0] + NEAR, FRAME[1] + 100))
            self.program.action("toggle-panel")
            self.wait_for_panel_at(FRAME)
        self.quit()

    def test_it_is_an_ordinary_window_when_it_is_not_kept_on_top(self):
        self.start_desktop()
        self.launch_at()
        self.program.action("toggle-keep-on-top")
        self.wait("an ordinary window", self.is_ordinary)
        self.program.action("toggle-keep-on-top")
        self.wait_for_panel_at(FRAME)
        self.assertFalse(self.is_ordinary())
        self.quit()
        self.assertEqual(self.program.read_preferences()["CaptionPanel"], " ".join(map(str, FRAME)))

    def test_what_it_opens_gets_no_variables_of_its_own(self):
        self.start_desktop()
        opener = Opener(self.desktop)
        self.launch_at()
        self.program.action("open-sessions-folder")
        self.wait("the folder", lambda: opener.opened)
        self.assertEqual(opener.variables_of_qt(), {})
        self.quit()

    def test_it_ends_without_qts_thread_that_reads_from_the_compositor(self):
        self.start_desktop()
        stuck = self.desktop.root / "stuck"
        # The library is loaded before the sanitizer's, if there is one.
        self.program.prefix = ["env", f"LD_PRELOAD={os.environ['VELUN_STUCK_READER']}",
                               f"VELUN_STUCK={stuck}", "ASAN_OPTIONS=verify_asan_link_order=0"]
        self.launch_at()
        left, top, width, height = FRAME
        self.input.move_to(left + width // 2, top + height // 2)
        stuck.touch()
        self.wait("the thread", lambda: self.input.move_by(1, 0) or stuck.read_text() == "stuck")
        self.quit()

    def test_it_is_dragged_to_another_output(self):
        self.start_desktop(outputs=2)
        self.launch_at(moved(FRAME, WIDTH, 0))
        self.drag_header(moved(FRAME, WIDTH, 0), -WIDTH, -60)
        self.leave_panel(moved(FRAME, 0, -60))
        self.quit()
        self.launch()
        self.wait_for_panel_at(moved(FRAME, 0, -60))
        self.quit()
