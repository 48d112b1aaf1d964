"""Files that a file manager opens with the program."""

import subprocess
import unittest

from library_case import LibraryCase

TITLE = "Velun — Saved Sessions"


class OpenWith(LibraryCase):
    def test_a_file_of_the_command_line_is_opened_by_the_first_and_a_later_launch(self):
        guest = self.desktop.root / "guest.json"
        guest.write_bytes(self.files[2].read_bytes())
        self.program.process = self.desktop.start([self.program.executable, str(guest)], log="velun")
        self.application = self.accessibility.application("app.velun.Velun")
        self.library = self.window(TITLE)
        self.wait_for_selection("Team call")
        other = self.desktop.root / "other.json"
        other.write_bytes(self.files[0].read_bytes())
        # From its own folder, with a relative name.
        subprocess.run([self.program.executable, "other.json"], check=True, timeout=30,
                       cwd=self.desktop.root, env=self.desktop.environment)
        self.wait_for_selection("Evening talk")
        self.quit()


if __name__ == "__main__":
    unittest.main()
