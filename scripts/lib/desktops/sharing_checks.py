"""Whether the panel hides while the screen is shared."""

import pictures
from check_base import NO, PANEL, YES, CheckBase

SETTING = "Hide caption window from screen sharing and recording"
PROMISE = "Keeps the caption window off"  # the beginning of the setting's note


class SharingChecks(CheckBase):
    def sharing(self):
        """Only where the settings promise it must it be hidden from everyone."""
        settings = self.settings()
        settings.wait_for("list item", "Captions").select()
        settings.wait_for("check box", SETTING)
        is_promised = any(label.name.startswith(PROMISE) and label.is_showing
                          for label in settings.find_all("label"))
        self.launch_again()
        self._program.show_panel()
        shown = self._session.steady_picture()

        def differs_from(before):
            now = self._session.picture()
            return pictures.area_of(pictures.differing(before, now), *PANEL) is not None

        with self._session.cast():
            hidden = self.becomes("the panel to hide", lambda: differs_from(shown))
            without = self._session.steady_picture()
            self._keep("sharing", without)
        # Perhaps at another place.
        returned = self.becomes("the panel to return", lambda: differs_from(without))
        if not hidden or not returned:
            return NO, "is not hidden" if not hidden else "does not return"
        if is_promised:
            return YES, self._session.CAST
        return "not promised", "hidden while PipeWire shares the screen"
