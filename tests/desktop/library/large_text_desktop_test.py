"""The library's windows with large fonts and on a dense screen: nothing is cut off."""

import unittest

from library_case import LibraryCase

LARGE_LINE = 30  # the smallest text's, in pixels


class LargeText(LibraryCase):
    screen = "2560x1600"

    def open_all(self):
        """The three windows, the settings last."""
        self.open_library()
        self.select("Evening talk")
        self.desktop.key("ctrl+shift+s")
        self.export = self.window("Export Session")
        self.settings = self.open_window("show-settings", "Velun Settings")
        self.show_page(self.settings, "Captions")
        self.settings.wait_for("label", "Input Source")

    def check_inside(self, window, line=10):
        """Every control is inside its window and at least as high as a line of its text."""
        left, top, width, height = window.extents
        shown = [node for node in window.walk() if node.is_showing and node.role in
                 ("label", "combo box", "check box", "push button")]
        self.assertGreater(len(shown), 5)
        for node in shown:
            x, y, w, h = node.extents
            self.assertTrue(left <= x and x + w <= left + width, f"{node} {node.extents}")
            self.assertGreaterEqual(h, line, node)
        return shown

    def check_apart(self, nodes):
        boxes = [(node, *node.extents) for node in nodes]
        for index, (one, x, y, w, h) in enumerate(boxes):
            for other, ox, oy, ow, oh in boxes[index + 1:]:
                self.assertFalse(x < ox + ow and ox < x + w and y < oy + oh and oy < y + h,
                                 f"{one} lies over {other}")

    def test_on_a_dense_screen_windows_keep_their_size(self):
        self.desktop.environment["QT_SCALE_FACTOR"] = "2"
        self.open_all()
        self.assertEqual(self.settings.extents[2:], (640, 620))
        self.assertEqual(self.export.extents[2:], (420, 345))
        self.assertEqual(self.library.extents[2:], (960, 620))
        for window in (self.settings, self.export):
            self.check_apart(self.check_inside(window))
        self.quit()

    def test_with_a_large_font_windows_grow_and_the_settings_scroll(self):
        # As a font of 20 points where the usual one has 9.
        self.desktop.environment |= {"QT_FONT_DPI": "213", "QT_ENABLE_HIGHDPI_SCALING": "0"}
        self.program.write_preferences(fontSize=30)
        self.open_all()
        self.check_apart(self.check_inside(self.export, LARGE_LINE))
        self.assertGreater(self.export.extents[3], 305)
        self.check_inside(self.settings, LARGE_LINE)
        self.assertGreater(self.settings.extents[2], 640)
        self.assertEqual(self.settings.extents[3], 620)
        last = self.settings.find("check box",
                                  "Hide caption window from screen sharing and recording")
        _, top, _, height = self.settings.extents

        def is_in_view():
            _, y, _, h = last.extents
            return top <= y and y + h <= top + height

        self.assertFalse(is_in_view())
        # From the list of pages to the last control of the form, which scrolls to it.
        self.desktop.key("shift+Tab")
        self.wait("the last control to come into view", is_in_view)

        shown = self.check_inside(self.library, LARGE_LINE)
        pickers = [node for node in shown if node.role == "combo box"]
        self.assertEqual(len(pickers), 2)
        self.check_apart(pickers)
        self.quit()


if __name__ == "__main__":
    unittest.main()
