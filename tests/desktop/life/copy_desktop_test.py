"""Texts of the real program's windows can be selected and copied, without their look."""

import unittest

from program_case import ProgramCase

BEFORE = "nothing copied yet"
CENTRED = "Free software"
MARGIN = 9  # pixels that are inside the first word of a text


class Copy(ProgramCase):
    def test_labels_of_windows_are_copied(self):
        self.launch()
        for action, title, part in (("show-about", "About Velun", CENTRED),
                                    ("check-for-updates", "Velun — Updates", "This copy")):
            with self.subTest(title):
                window = self.open_window(action, title)
                self.copy_word(window, part)
        self.quit()

    def test_the_text_of_an_alert_is_copied(self):
        self.program.launch()
        self.application = self.accessibility.application("app.velun.Velun")
        missing = self.desktop.root / "missing.json"
        self.program.open(missing)
        alert = self.application.wait_for("dialog", "Couldn’t Complete the Action")
        self.wait("the alert to be active", lambda: "active" in alert.states)
        self.copy_word(alert, "Couldn’t Complete")
        alert.find("push button", "OK").press()
        self.wait("the end of the alert", lambda: not self.application.find("dialog"))
        self.quit()

    def copy_word(self, window, beginning):
        """Selects a word of a label with a double click, and copies it with the keyboard."""
        label = self.wait(f"“{beginning}”", lambda: next(
            (node for node in window.walk() if node.is_showing and node.role in (
                "label", "notification") and node.name.startswith(beginning)), None))
        self.fill_clipboard()
        left, top, width, height = label.extents
        # A centred text has no word at its left edge.
        x = left + (width // 2 if beginning == CENTRED else MARGIN)
        self.desktop.run("xdotool", "mousemove", x, top + min(height // 2, MARGIN),
                         "click", "--repeat", 2, "--delay", 60, 1)
        self.desktop.key("ctrl+c")
        copied = self.wait("the clipboard", lambda: self.clipboard() not in ("", BEFORE)
                           and self.clipboard())
        self.assertIn(copied.strip(), label.name)
        self.assertNotIn("text/html", self.clipboard("TARGETS"))

    def fill_clipboard(self):
        keeper = self.desktop.start(["xclip", "-selection", "clipboard", "-loops", "0"],
                                    stdin=-1, text=True)
        keeper.stdin.write(BEFORE)
        keeper.stdin.close()
        self.wait("the clipboard", lambda: self.clipboard() == BEFORE)

    def clipboard(self, target="UTF8_STRING"):
        return self.desktop.run("xclip", "-selection", "clipboard", "-o", "-t", target)


if __name__ == "__main__":
    unittest.main()
