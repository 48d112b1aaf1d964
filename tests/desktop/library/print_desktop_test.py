"""The print dialog of the real program, which prints into a PDF file where there is no printer."""

import subprocess
import unicodedata
import unittest

from library_case import LibraryCase

DIALOG = "Print Session"
LINES = ["Rivers find the sea.", "강은 바다를 찾아간다.", "Los ríos hallan el mar.",
         "This takes a while."]


class Printing(LibraryCase):
    def open_dialog(self, title):
        self.open_library()
        self.select(title)
        self.desktop.key("ctrl+p")
        return self.window(DIALOG)

    def output(self, dialog):
        """The field with the file to write."""
        return dialog.wait_for("text", label="Output file:")

    def wait_for_pages(self, path):
        def is_whole():
            try:
                return path.read_bytes().rstrip().endswith(b"%%EOF")
            except FileNotFoundError:
                return False  # also after it was there: the dialog tries whether it can be written

        self.wait("the file", is_whole)

    def read(self, path):
        text = subprocess.run(["pdftotext", path, "-"], check=True, capture_output=True).stdout
        # Fonts have one sign for some pairs of letters.
        return unicodedata.normalize("NFKC", text.decode())

    def test_a_session_is_printed_into_a_file(self):
        path = self.desktop.home / "a talk.pdf"
        dialog = self.open_dialog("Evening talk")
        self.output(dialog).set_text(str(path))
        dialog.wait_for("push button", "Print").press()
        self.wait_for_pages(path)
        text = self.read(path)
        for part in ["Evening talk", "Korean", "Spanish", *LINES]:
            self.assertIn(part, text)
        about = subprocess.run(["pdfinfo", path], check=True, capture_output=True, text=True).stdout
        self.assertRegex(about, r"Title: +Evening talk\n")
        self.quit()

    def test_the_proposed_file_can_be_written_whatever_the_title(self):
        dialog = self.open_dialog("Budget 2025/26")
        self.assertEqual(self.output(dialog).text,
                         str(self.desktop.home / "Budget 2025-26.pdf"))
        dialog.wait_for("push button", "Print").press()
        self.wait_for_pages(self.desktop.home / "Budget 2025-26.pdf")
        self.quit()

    def test_nothing_is_printed_without_the_users_consent(self):
        dialog = self.open_dialog("Evening talk")
        dialog.wait_for("push button", "Cancel").press()
        self.wait("the dialog to go", lambda: not dialog.is_showing)
        self.assertEqual(list(self.desktop.home.glob("*.pdf")), [])
        self.quit()


if __name__ == "__main__":
    unittest.main()
