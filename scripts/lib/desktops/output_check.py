"""Whether the panel goes to the remaining output, in a session with two of them, and returns."""

from check_base import NO, PANEL_TITLE, YES, CheckBase

FRAME = (420, 380, 560, 250)  # of the panel on an output, in points
LEFT, WIDTH, HEIGHT = 0, 2, 3  # of a frame


class OutputCheck(CheckBase):
    _before = None

    def panel_on_removed_output(self):
        width = self._session.SIZE[0]
        left, *rest = FRAME
        self._program.quit()
        self._program.write_preferences(
            language="en", statusItemExplained=True,
            CaptionPanel=" ".join(map(str, (left + width, *rest))))
        self._program.launch()
        self._program.show_panel()
        before = self._before = self.seen_panel("two-outputs")
        if not before or before[LEFT] < width:
            return NO, "it is not where it was on the second output"
        self._program.show_panel()
        panel = self._accessible().wait_for("frame", PANEL_TITLE)
        self._session.remove_output()

        def is_on_first():
            left, _, width, _ = panel.extents
            return left >= 0 and left + width <= self._session.SIZE[0]

        moved = self.becomes("the panel on the remaining output", is_on_first)
        after = self.seen_panel("one-output")
        if not moved or not after or after[LEFT] + after[WIDTH] > width:
            return NO, "it is not seen on the remaining output"
        return YES, ""

    def panel_returns(self):
        """To its place, when its output is there again."""
        self._program.show_panel()
        panel = self._accessible().wait_for("frame", PANEL_TITLE)
        self._session.return_output()
        width = self._session.SIZE[0]
        returned = self.becomes("the panel on its output", lambda: panel.extents[LEFT] >= width)
        # The X server may have taken the pointer to be over the panel, with the outputs changing.
        self.becomes("the header to close", lambda: panel.extents[HEIGHT] == FRAME[HEIGHT])
        after = self.seen_panel("output-back")
        if not returned or not after or not self._before:
            return NO, "it stays on the other output"
        moved = max(abs(a - b) for a, b in zip(self._before, after))
        return (YES, "") if moved <= 2 else (NO, f"{moved} pixels away")
