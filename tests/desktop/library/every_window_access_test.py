"""All windows of the real program as assistive technology sees them, in both languages."""

import unittest

from library_case import LibraryCase

WINDOWS = ("show-panel", "show-history", "show-settings", "show-about", "check-for-updates")
WITHOUT_MEANING = ("filler", "panel", "unknown", "invalid", "")
FEWEST = 500  # controls that a walk through everything meets


class EveryWindowAccess(LibraryCase):
    def launch_in(self, language):
        self.program.write_preferences(language=language, statusItemExplained=True)
        self.launch()

    def windows(self):
        return [child for child in self.application.children if child.is_showing]

    def open_all(self):
        for number, action in enumerate(WINDOWS, 1):
            self.program.action(action)
            self.wait(f"{number} windows", lambda count=number: len(self.windows()) == count)

    def controls(self):
        """Everything in sight that can have the keyboard."""
        return [node for window in self.windows() for node in window.walk()
                if {"showing", "focusable"} <= node.states]

    def assert_controls_are_named(self):
        """Returns how many there are."""
        controls = self.controls()
        for node in controls:
            self.assertTrue(node.name or node.label, node)
            self.assertNotIn(node.role, WITHOUT_MEANING, node)
        return len(controls)

    def assert_everything_is_named(self, language):
        self.launch_in(language)
        self.open_all()
        sessions, pages = [node for window in self.windows() for node in window.walk()
                           if node.role == "list" and node.is_showing][:2]
        count = 0
        next(row for row in sessions.children if ", " in row.name).select()
        for page in pages.children:
            page.select()
            self.wait(f"the page {page.name}", lambda row=page: "selected" in row.states)
            count += self.assert_controls_are_named()
        self.assertGreater(count, FEWEST)
        self.quit()

    def test_every_control_has_a_name_and_a_role_in_english(self):
        self.assert_everything_is_named("en")

    def test_every_control_has_a_name_and_a_role_in_korean(self):
        self.assert_everything_is_named("ko")

    def test_start_at_login_writes_and_removes_its_entry(self):
        self.launch_in("en")
        settings = self.open_window("show-settings", "Velun Settings")
        entry = self.desktop.home / "config" / "autostart" / "app.velun.Velun.desktop"
        toggle = settings.wait_for("check box", "Start at Login")
        toggle.toggle()
        self.wait("the entry", entry.exists)
        self.wait("the mark", lambda: toggle.is_checked)
        toggle.toggle()
        self.wait("the entry to go", lambda: not entry.exists())
        self.quit()


if __name__ == "__main__":
    unittest.main()
