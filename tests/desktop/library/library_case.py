"""Base class of tests of the saved-sessions window."""

from datetime import datetime

import session_files
from program_case import ProgramCase
from session_files import UTC
from window_titles import HISTORY

LEGACY = ("20:15:03", "Hello", "안녕")


class LibraryCase(ProgramCase):
    """With a filled sessions folder in `files`, newest first; the last is of an earlier version."""

    def setUp(self):
        super().setUp()
        self.now = datetime.now(UTC).replace(microsecond=0)
        if not 1 <= self.now.hour < 23:  # today must not end during the test
            self.desktop.environment["TZ"] = "Asia/Seoul"
        self.prepare()

    def prepare(self):
        self.sessions = session_files.sample_library(self.now)
        self.files = [session_files.write(self.program.sessions, each) for each in self.sessions]
        self.files.append(session_files.write_legacy(
            self.program.sessions, datetime(2024, 1, 2, 20, 15, 0), [LEGACY]))

    def open_library(self, title=HISTORY):
        self.launch()
        self.library = self.open_window("show-history", title)
        return self.library

    def list(self):
        return self.library.find("list", self.list_name)

    list_name = "Saved Sessions"

    def rows(self):
        """The names of the rows, headings of days among them."""
        listed = self.list()
        if not listed or not listed.is_showing:
            return []
        return [row.name for row in listed.children]

    def titles(self):
        """The titles of the sessions alone."""
        return [name.split(", ")[0] for name in self.rows() if ", " in name]

    def selected(self):
        """The titles of the selected sessions."""
        return [row.name.split(", ")[0] for row in self.list().children
                if "selected" in row.states]

    def wait_for_titles(self, *titles):
        self.wait(f"the sessions {titles}", lambda: self.titles() == list(titles))

    def wait_for_selection(self, *titles):
        self.wait(f"{titles} to be selected", lambda: self.selected() == list(titles))

    def row(self, title):
        self.wait(f"the row “{title}”", lambda: title in self.titles())
        return next(row for row in self.list().children if row.name.startswith(f"{title}, "))

    def select(self, title):
        row = self.row(title)
        row.select()
        # Several can be selected, so that the others stay selected.
        for other in self.list().children:
            if "selected" in other.states and other != row:
                other.toggle()
        self.wait_for_selection(title)

    def open_menu(self, ask):
        """Asks for a menu and waits for it. One of its own is no part of the accessible tree, so
        its window tells.
        """
        def windows():
            return self.desktop.run("xdotool", "search", "--onlyvisible", "--class", "velun").split()

        before = len(windows())
        ask()
        self.wait("the menu", lambda: len(windows()) > before)

    def transcript(self):
        """The text of the detail pane; empty if no session is shown."""
        view = self.library.find("text", "Caption Text") or self.library.find("text", "자막 본문")
        return view.text if view and view.is_showing else ""

    def wait_for_transcript(self, condition, what="the transcript"):
        self.wait(what, lambda: condition(self.transcript()))
