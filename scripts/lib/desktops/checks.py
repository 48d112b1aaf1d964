"""What is checked on each desktop."""

import pictures
from check_base import COLOUR, HEADER, NO, PANEL_TITLE, UNKNOWN, WINDOW, YES, run_checks
from look_checks import LookChecks
from private_desktop import end
from sharing_checks import SharingChecks
from start_checks import StartChecks

OTHER_COLOUR = "#204080"
MENU = (80, 120)
ICON = (8, 48)
READABLE = 3.0
TRIES = 3


class Checks(LookChecks, SharingChecks, StartChecks):
    _icon = None

    def all(self):
        """The results by name, in the order of the page's columns."""
        return run_checks({
            "status icon": self.status_icon, "its menu": self.menu,
            "notice without a tray": self.notice, "start from the menu": self.start_from_menu,
            "above a window": self.above_window, "above full screen": self.above_full_screen,
            "every workspace": self.workspaces, "place kept": self.place,
            "windows come to the front": self.front, "dark and light": self.dark,
            "high contrast": self.contrast, "less motion": self.motion,
            "hidden while shared": self.sharing})

    # The icon and its menu

    def status_icon(self):
        if not self._session.HAS_TRAY:
            return UNKNOWN, "no tray"
        # A desktop may show something else of its own while it starts.
        for _ in range(TRIES):
            before, after = self._without_and_with_icon()
            spots = pictures.spots(pictures.differing(before, after), *ICON)
            if spots:
                break
        else:
            return NO, "nothing of the icon is seen"
        self._icon = max(spots, key=lambda area: area[2] * area[3])
        drawn = pictures.luminance(pictures.cut(after, self._icon))
        bar = pictures.luminance(pictures.median_colour(pictures.cut(before, self._icon)))
        ratio = max(pictures.contrast(drawn.max(), bar), pictures.contrast(drawn.min(), bar))
        return (YES if ratio >= READABLE else NO), f"{ratio:.0f}:1"

    def _without_and_with_icon(self):
        if self._program.owns_name():
            self._program.quit()
        before = self._session.steady_picture()
        self._program.launch()
        self._session.wait("the icon's item", lambda: self._program.icon_name() is not None)
        self._program.show_panel(False)
        after = self._session.steady_picture()
        self._keep("icon", after)
        return before, after

    def menu(self):
        if not self._icon:
            return UNKNOWN, ""
        before = self._session.steady_picture()
        left, top, width, height = self._icon
        self._session.click(left + width // 2, top + height // 2, self._session.TRAY_BUTTON)
        after = self._session.steady_picture()
        self._keep("menu", after)
        is_open = pictures.area_of(pictures.differing(before, after), *MENU)
        self._session.click(self._session.SIZE[0] // 2, self._session.SIZE[1] - 60)
        self._session.steady_picture()
        failed = self._broken_entries()
        count = len(self._program.menu())
        if failed:
            return NO, ", ".join(failed)
        return (YES, f"{count} commands") if is_open else (NO, "a click does not open it")

    def _broken_entries(self):
        """The entries without their effect, each chosen over the bus as the bar does it."""
        effects = {"Start Captions": ("running", True), "Stop Captions": ("running", False),
                   "Microphone": ("input", "microphone"), "Computer Audio": ("input", "computer"),
                   "Hide Caption Window": ("toggle-panel", False),
                   "Show Caption Window": ("toggle-panel", True)}
        failed = []
        for title, (state, value) in effects.items():
            try:
                self._program.choose(title)
                self._program.wait_for_state(state, value)
            except AssertionError:
                failed.append(title)
        self._program.show_panel(False)
        return failed

    def notice(self):
        if self._session.HAS_TRAY:
            return UNKNOWN, "has a tray"
        self._accessible().wait_for(name="No System Tray Found")
        self._keep("notice", self._session.steady_picture())
        self._accessible().wait_for("push button", "OK").press()
        return YES, ""

    # The panel

    def above_window(self):
        return self._above(COLOUR, full_screen=False, name="window")

    def above_full_screen(self):
        return self._above(OTHER_COLOUR, full_screen=True, name="full-screen")

    def _above(self, colour, full_screen, name):
        marks = {}
        for kind in self._session.OBSTACLES:
            self._program.show_panel()
            window = self._session.show_obstacle(kind, colour, full_screen)
            try:
                marks[kind] = YES if self.seen_panel(f"{name}-{kind}") else NO
            finally:
                end(window)
        if len(set(marks.values())) == 1:
            return marks.popitem()[1], ""
        return NO, ", ".join(f"{kind}: {mark}" for kind, mark in marks.items())

    def workspaces(self):
        self._program.show_panel()
        self._session.show_next_workspace()
        try:
            return (YES if self.seen_panel("workspace") else NO), ""
        finally:
            self._session.show_first_workspace()
            self._session.steady_picture()

    def place(self):
        self._program.show_panel()
        # Nothing but the pointer moves a layer surface.
        if not self._session.move_panel(90, 120):
            self._drag_panel(-200, -150)
        self._session.steady_picture()
        before = self.seen_panel()
        self.launch_again()
        self._program.show_panel()
        after = self.seen_panel()
        if not before or not after:
            return NO, "not seen"
        moved = max(abs(a - b) for a, b in zip(before, after))
        return (YES, "") if moved <= 2 else (NO, f"{moved} pixels away")

    def _drag_panel(self, *by):
        panel = self._accessible().wait_for("frame", PANEL_TITLE)
        left, top, width, closed = panel.extents
        with self._session.pointer_at(left + width // 2, top + closed // 2) as leave:
            button = panel.wait_for("button menu", "Translation Settings")
            self._session.wait("the header", lambda: panel.extents[3] == closed + HEADER)
            left, top, _, height = button.extents
            # Beside the button the header is empty.
            self._session.drag(left - 20, top + height // 2, by)
            leave()
            self._session.wait("the header to close", lambda: panel.extents[3] == closed)

    # The other windows

    def front(self):
        window = self._session.show_obstacle(self._session.OBSTACLES[-1], COLOUR, False)
        try:
            before = self._session.steady_picture()
            self.settings()
            after = self._session.steady_picture()
            self._keep("settings", after)
            seen = pictures.area_of(pictures.differing(before, after), *WINDOW)
            return (YES if seen else NO), ""
        finally:
            end(window)
