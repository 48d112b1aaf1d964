"""The real program with the desktop's setting for higher contrast."""

import re
import unittest
from pathlib import Path

from program_case import ProgramCase

PORTAL = Path(__file__).resolve().parents[2] / "support" / "settings_portal.py"
TITLES = {"en": ("Velun Captions", "Velun Settings"), "ko": ("Velun 자막", "Velun 설정")}
BLACK, WHITE = (0, 0, 0), (255, 255, 255)


class Contrast(ProgramCase):
    def setUp(self):
        super().setUp()
        self.desktop.start_compositor()
        self.portal = self.desktop.start(["/usr/bin/python3", "-B", PORTAL], stdin=-1, stdout=-1,
                                         stderr=None, text=True, bufsize=1)
        self.addCleanup(self.portal.stdin.close)
        self.addCleanup(self.portal.stdout.close)
        self.assertEqual(self.portal.stdout.readline().strip(), "ready")

    def ask_for_contrast(self, level):
        self.ask_for("contrast", level)

    def ask_for(self, key, level):
        self.portal.stdin.write(f"org.freedesktop.appearance {key} {level}\n")
        self.assertEqual(self.portal.stdout.readline().strip(), "told")

    def open_windows(self, language):
        """Screen points in the panel, on its edge, and beside a control of the settings."""
        self.program.write_preferences(language=language)
        self.launch()
        panel, settings = TITLES[language]
        self.program.action("show-panel")
        left, top, _, height = self.application.wait_for("frame", panel).extents
        x, y, _, control = self.open_window("show-settings", settings).wait_for("combo box").extents
        # The settings cover the middle of the panel.
        beside = left + 30
        return ((beside, top + height - 20), (beside, top + height - 1), (x - 6, y + control // 2))

    def pixel(self, point):
        """Red, green and blue of a screen point."""
        text = self.desktop.run("import", "-window", "root", "-crop", "1x1+%d+%d" % point,
                                "-depth", "8", "txt:-")
        found = re.search(r"^0,0: \((\d+),(\d+),(\d+)", text, re.M)
        return tuple(int(number) for number in found.groups()) if found else None

    def wait_for_contrast(self, inside, edge, window):
        self.wait("a panel that is black", lambda: self.pixel(inside) == BLACK)
        self.wait("its edge in white", lambda: self.pixel(edge) == WHITE)
        self.wait("a window in white", lambda: self.pixel(window) == WHITE)

    def wait_for_the_usual(self, inside, edge, window):
        self.wait("a panel that shows through", lambda: self.pixel(inside) not in (None, BLACK))
        self.wait("its faint edge", lambda: self.pixel(edge) not in (None, WHITE))
        self.wait("a window in its own colour", lambda: self.pixel(window) not in (None, WHITE))

    def test_open_windows_change_at_once(self):
        points = self.open_windows("en")
        self.wait_for_the_usual(*points)
        self.ask_for_contrast(1)
        self.wait_for_contrast(*points)
        self.ask_for_contrast(0)
        self.wait_for_the_usual(*points)
        self.quit()

    def test_dark_and_light_are_followed_in_high_contrast_too(self):
        _, _, window = self.open_windows("en")
        self.ask_for("color-scheme", 1)
        self.wait("a dark window", lambda: sum(self.pixel(window) or WHITE) < 3 * 60)
        self.ask_for("color-scheme", 2)
        self.wait("a light window", lambda: sum(self.pixel(window) or BLACK) > 3 * 200)
        self.ask_for_contrast(1)
        self.wait("a window in white", lambda: self.pixel(window) == WHITE)
        self.ask_for("color-scheme", 1)
        self.wait("a window in black", lambda: self.pixel(window) == BLACK)
        self.ask_for_contrast(0)
        self.wait("a dark window again", lambda: self.pixel(window) not in (None, BLACK))
        self.ask_for("color-scheme", 0)
        self.wait("its usual colour", lambda: sum(self.pixel(window) or BLACK) > 3 * 200)
        self.quit()

    def test_contrast_requested_before_the_start_applies(self):
        self.ask_for_contrast(1)
        for language in TITLES:
            with self.subTest(language):
                self.wait_for_contrast(*self.open_windows(language))
                self.quit()


if __name__ == "__main__":
    unittest.main()
