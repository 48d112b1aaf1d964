"""Whether the program is started by the desktop's own means."""

from check_base import NO, YES, CheckBase


class StartChecks(CheckBase):
    def start_from_menu(self):
        """The first start shows the icon, the second one the panel."""
        self._program.quit()
        self._session.start_from_menu()
        if not self.becomes("the program", self._program.owns_name, 30):
            return NO, "it does not start"
        self._session.wait("its actions", self._program.state)
        if not self._session.HAS_TRAY:
            # Then the first start shows it, too.
            self._program.wait_for_state("toggle-panel", True)
        self._program.show_panel(False)
        self._session.start_from_menu()
        shown = self.becomes("the panel", lambda: self._program.state().get("toggle-panel") is True)
        if not shown or not self.seen_panel("menu-start"):
            return NO, "the second start does not show the panel"
        return YES, self._session.MENU

    def start_at_login(self):
        """Switches it on in the settings."""
        self.settings().wait_for("check box", "Start at Login").toggle()
        self._session.wait("the entry", lambda: any(self._session.autostart.glob("*.desktop")))
