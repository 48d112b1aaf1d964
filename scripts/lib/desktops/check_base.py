"""What the checks of all subjects need."""

import pictures
from session import Session

YES, NO, UNKNOWN = "yes", "no", "–"
COLOUR = "#802040"  # of another program's window
PANEL = (220, 40)  # the least size, in pixels, of what counts as the panel
WINDOW = (300, 150)  # the same of a window
HEADER = 44  # points by which it grows while the pointer is over it
PANEL_TITLE = "Velun Captions"
SETTINGS_TITLE = "Velun Settings"


class CheckBase:
    """A check returns a mark and, if need be, a note. `accessible` returns the program as assistive
    technology sees it; `keep` stores a picture of a moment under a name.
    """

    def __init__(self, session: Session, program, accessible, keep):
        self._session = session
        self._program = program
        self._accessible = accessible
        self._keep = keep

    def seen_panel(self, name=None):
        """Where the panel is seen: what differs once it is hidden. None if it is covered."""
        shown = self._session.steady_picture()
        if name:
            self._keep(name, shown)
        self._program.show_panel(False)
        hidden = self._session.steady_picture()
        return pictures.area_of(pictures.differing(shown, hidden), *PANEL)

    def settings(self):
        """Opens the settings window."""
        self._program.action("show-settings")
        return self._accessible().wait_for("frame", SETTINGS_TITLE)

    def launch_again(self):
        """Closes the other windows, which may be above the panel."""
        self._program.quit()
        self._program.launch()
        if not self._session.HAS_TRAY:
            # It is shown once more when the program has looked for a tray.
            self._program.show_panel(False)
            self.becomes("the panel", lambda: self._program.state().get("toggle-panel"))

    def becomes(self, what, condition, seconds=15):
        """Whether it becomes so in time."""
        try:
            return bool(self._session.wait(what, condition, seconds))
        except AssertionError:
            return False


def run_checks(checks):
    """The results by name, in the order of the page's columns."""
    results = {}
    for name, check in checks.items():
        try:
            results[name] = check()
        except NotImplementedError as error:
            results[name] = (UNKNOWN, str(error) or "not possible here")
        except AssertionError as error:
            results[name] = (NO, str(error).splitlines()[0])
        print(f"  {name}: {' '.join(results[name])}", flush=True)
    return results
