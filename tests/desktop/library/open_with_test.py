"""Files that a file manager opens with the program."""

import os
import shutil
import subprocess
import unittest
from pathlib import Path

from library_case import LibraryCase
from window_titles import HISTORY

SESSION_TYPE = "application/x-velun-session+json"
DATA = Path(os.environ["VELUN_DATA"])
BUILT_DATA = Path(os.environ["VELUN_BUILT_DATA"])


class OpenWith(LibraryCase):
    def test_a_file_of_the_command_line_is_opened_by_the_first_and_a_later_launch(self):
        guest = self.desktop.root / "guest.json"
        guest.write_bytes(self.files[2].read_bytes())
        self.program.process = self.desktop.start([self.program.executable, str(guest)], log="velun")
        self.application = self.accessibility.application("app.velun.Velun")
        self.library = self.window(HISTORY)
        self.wait_for_selection("Team call")
        other = self.desktop.root / "other.json"
        other.write_bytes(self.files[0].read_bytes())
        # From its own folder, with a relative name.
        subprocess.run([self.program.executable, "other.json"], check=True, timeout=30,
                       cwd=self.desktop.root, env=self.desktop.environment)
        self.wait_for_selection("Evening talk")
        self.quit()

    def install_types(self):
        """Installs the program's entry and its type beside those of the system."""
        share = self.desktop.root / "share"
        packages, applications = share / "mime/packages", share / "applications"
        for folder in (packages, applications):
            folder.mkdir(parents=True)
        shutil.copy("/usr/share/mime/packages/freedesktop.org.xml", packages)
        shutil.copy(DATA / "mime/app.velun.Velun.xml", packages)
        entry = (BUILT_DATA / "app.velun.Velun.desktop").read_text()
        # It counts only if its program is there.
        lines = [f"Exec={self.program.executable} %U" if line.startswith("Exec=") and "%U" in line
                 else line for line in entry.splitlines()]
        (applications / "app.velun.Velun.desktop").write_text("\n".join(lines))
        self.desktop.environment["XDG_DATA_DIRS"] = str(share)
        self.desktop.run("update-mime-database", share / "mime")
        self.desktop.run("update-desktop-database", applications)

    def type_of(self, path):
        return self.desktop.run("gio", "info", "-a", "standard::content-type", path).split()[-1]

    def test_a_file_manager_tells_sessions_from_other_files_and_opens_them(self):
        self.install_types()
        guest = self.desktop.root / "a talk.json"
        guest.write_bytes(self.files[2].read_bytes())
        for name, text in (("plain.json", '{"id": 1}'), ("list.json", "[1]"),
                           ("like.json", '{\n  "id" : "1",\n  "rows" : []\n}')):
            other = self.desktop.root / name
            other.write_text(text)
            self.assertEqual(self.type_of(other), "application/json")
        # Those of an earlier version are no JSON.
        for path in (*self.files[:-1], guest):
            self.assertEqual(self.type_of(path), SESSION_TYPE)
        self.assertIn("app.velun.Velun.desktop", self.desktop.run("gio", "mime", SESSION_TYPE))
        self.launch()
        self.desktop.run("gio", "open", guest)
        self.library = self.window(HISTORY)
        self.wait_for_selection("Team call")
        self.quit()


if __name__ == "__main__":
    unittest.main()
