"""What is checked on each desktop. A check returns a mark and, if need be, a note."""

import pictures
from private_desktop import end
from session import Session

YES, NO, UNKNOWN = "yes", "no", "–"
COLOUR = "#802040"
OTHER_COLOUR = "#204080"
PANEL = (220, 40)  # the least size, in pixels, of what counts as the panel
MENU = (80, 120)
WINDOW = (300, 150)
ICON = (8, 48)
READABLE = 3.0


class Checks:
    """`keep` stores a picture of a moment under a name."""

    def __init__(self, session: Session, program, accessible, keep):
        self._session = session
        self._program = program
        self._accessible = accessible
        self._keep = keep
        self._icon = None

    def all(self):
        """The results by name, in the order of the page's columns."""
        results = {}
        for name, check in (("tray icon", self.tray_icon), ("its menu", self.menu),
                            ("notice without a tray", self.notice),
                            ("above a window", self.above_window),
                            ("above full screen", self.above_full_screen),
                            ("every workspace", self.workspaces),
                            ("place kept", self.place),
                            ("windows come to the front", self.front),
                            ("dark and light", self.dark),
                            ("high contrast", self.contrast)):
            try:
                results[name] = check()
            except (AssertionError, NotImplementedError) as error:
                results[name] = (UNKNOWN, str(error).splitlines()[0] if str(error) else "not possible here")
            print(f"  {name}: {' '.join(results[name])}", flush=True)
        return results

    # The icon and its menu

    def tray_icon(self):
        if not self._session.HAS_TRAY:
            return UNKNOWN, "no tray"
        if self._program.owns_name():
            self._program.quit()
        before = self._session.steady_picture()
        self._program.launch()
        self._session.wait("the icon's item", lambda: self._program.icon_name() is not None)
        self._program.show_panel(False)
        after = self._session.steady_picture()
        spots = pictures.spots(pictures.differing(before, after), *ICON)
        self._keep("icon", after)
        if not spots:
            return NO, "nothing of the icon is seen"
        self._icon = max(spots, key=lambda area: area[2] * area[3])
        drawn = pictures.luminance(pictures.cut(after, self._icon))
        bar = pictures.luminance(pictures.median_colour(pictures.cut(before, self._icon)))
        ratio = max(pictures.contrast(drawn.max(), bar), pictures.contrast(drawn.min(), bar))
        return (YES if ratio >= READABLE else NO), f"{ratio:.0f}:1"

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

    def seen_panel(self, name=None):
        """Where the panel is seen: what differs once it is hidden. None if it is covered."""
        shown = self._session.steady_picture()
        if name:
            self._keep(name, shown)
        self._program.show_panel(False)
        hidden = self._session.steady_picture()
        return pictures.area_of(pictures.differing(shown, hidden), *PANEL)

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
        if not self._session.move_panel(90, 120):
            return UNKNOWN, "its window cannot be moved from outside"
        self._session.steady_picture()
        before = self.seen_panel()
        self._program.quit()
        self._program.launch()
        self._program.show_panel()
        after = self.seen_panel()
        if not before or not after:
            return NO, "not seen"
        moved = max(abs(a - b) for a, b in zip(before, after))
        return (YES, "") if moved <= 2 else (NO, f"{moved} pixels away")

    # The other windows

    def front(self):
        window = self._session.show_obstacle(self._session.OBSTACLES[-1], COLOUR, False)
        try:
            before = self._session.steady_picture()
            self._program.action("show-settings")
            self._accessible().wait_for("frame", "Velun Settings")
            after = self._session.steady_picture()
            self._keep("settings", after)
            seen = pictures.area_of(pictures.differing(before, after), *WINDOW)
            return (YES if seen else NO), ""
        finally:
            end(window)

    def settings_colour(self):
        """The most usual colour of the settings window, which is the only one that is open."""
        after = self._session.steady_picture()
        window = self._accessible().find("frame", "Velun Settings")
        if not window:
            return None
        left, top, width, height = window.extents
        area = (max(left, 0), max(top, 0), width, height)
        return pictures.median_colour(pictures.cut(after, area))

    def dark(self):
        self._program.show_panel(False)
        self._program.action("show-settings")
        self._accessible().wait_for("frame", "Velun Settings")
        self._session.set_dark(True)
        dark = self._wait_for_colour(lambda light: light < 0.2)
        self._keep("dark", self._session.steady_picture())
        self._session.set_dark(False)
        light = self._wait_for_colour(lambda light: light > 0.5)
        return (YES if dark and light else NO), ""

    def contrast(self):
        self._session.set_high_contrast(True)
        high = self._wait_for_colour(lambda light: light in (0, 1))
        self._keep("contrast", self._session.steady_picture())
        self._session.set_high_contrast(False)
        usual = self._wait_for_colour(lambda light: light not in (0, 1))
        return (YES if high and usual else NO), ""

    def _wait_for_colour(self, fits):
        """Whether the settings window gets such a luminance, 0 to 1."""
        def is_so():
            colour = self.settings_colour()
            return colour is not None and fits(round(float(pictures.luminance(colour)), 4))
        try:
            return self._session.wait("the colours", is_so, 15)
        except AssertionError:
            return False
