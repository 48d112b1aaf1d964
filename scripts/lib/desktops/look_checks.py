"""Whether the program follows the desktop's wishes for the look of programs."""

import pictures
from check_base import HEADER, NO, PANEL_TITLE, UNKNOWN, WINDOW, YES, CheckBase

TRIES = 4


class LookChecks(CheckBase):
    _settings_area = None

    def settings_colour(self):
        """The most usual colour of the settings window."""
        picture = self._session.steady_picture()
        return pictures.median_colour(pictures.cut(picture, self._settings_area))

    def dark(self):
        self.launch_again()
        self._program.show_panel(False)
        before = self._session.steady_picture()
        self.settings()
        after = self._session.steady_picture()
        self._settings_area = pictures.area_of(pictures.differing(before, after), *WINDOW)
        if not self._settings_area:
            return NO, "the settings are not seen"
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
            return fits(round(float(pictures.luminance(self.settings_colour())), 4))
        return self.becomes("the colours", is_so)

    # Motion

    def motion(self):
        """Between its two heights the panel has others while its header moves, and no others where
        less motion is wished.
        """
        self.launch_again()
        self._program.show_panel()
        self._session.set_less_motion(False)
        if not any(len(self._heights_between()) > 1 for _ in range(TRIES)):
            return UNKNOWN, "no motion is seen"
        self._session.set_less_motion(True)
        stopped = any(not self._heights_between() for _ in range(TRIES))
        # It stays so: once may be chance.
        stopped = stopped and not self._heights_between() and not self._heights_between()
        self._session.set_less_motion(False)
        moves = any(len(self._heights_between()) > 1 for _ in range(TRIES))
        return (YES if stopped and moves else NO), ""

    def _heights_between(self):
        """The panel's heights while the header opens, without the first and the last."""
        panel = self._accessible().wait_for("frame", PANEL_TITLE)
        left, top, width, height = panel.extents
        heights = set()

        def is_open():
            heights.add(panel.extents[3])
            return height + HEADER in heights

        with self._session.pointer_at(left + width // 2, top + height // 2) as leave:
            self._session.wait("the header", is_open)
            leave()
            self._session.wait("the header to close", lambda: panel.extents[3] == height)
        return heights - {height, height + HEADER}
