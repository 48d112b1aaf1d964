"""The page "Appearance" of the settings in the real program: every control and its effect."""

import json
import unittest

from program_case import ProgramCase


class Appearance(ProgramCase):
    def setUp(self):
        super().setUp()
        self.launch()
        self.settings = self.open_window("show-settings", "Velun Settings")
        self.show_page(self.settings, "Appearance")
        self.settings.wait_for("combo box", label="Ready Set")

    def choose(self, label, entry):
        self.settings.wait_for("combo box", label=label).choose(entry)

    def wait_for_change(self, panel_set, key, value):
        """Waits until a value of a set's style is stored."""
        def is_stored():
            stored = self.preference("panelStyle." + panel_set)
            return json.loads(stored or "{}").get(key) == value

        self.wait(f"{key} of {panel_set} to be {value!r}", is_stored)

    def white_pixels(self):
        """How many pixels of the preview are white, the colour of the text."""
        left, top, width, height = self.settings.wait_for("graphic", "Preview").extents
        picture = self.desktop.root / "screen.png"
        self.desktop.take_picture(picture)
        colors = self.desktop.run("convert", picture, "-crop", f"{width}x{height}+{left}+{top}",
                                  "-format", "%c", "histogram:info:-")
        return sum(int(line.split(":")[0]) for line in colors.splitlines()
                   if "#FFFFFF" in line.upper())

    def test_the_preview_shows_text(self):
        self.wait("white letters", lambda: self.white_pixels() > 200)
        self.quit()

    def test_every_control_changes_the_style_of_its_set(self):
        self.assertEqual(self.settings.find("combo box", label="Ready Set").entries(),
                         ["Calm", "Clear on Dark", "Yellow on Black", "Black on White", "Subtitle"])
        for label, entry, key, value in (
                ("Weight", "Bold", "fontWeight", 700),
                ("Line Height", "150%", "lineSpacing", 0.5),
                ("Text Color", "Yellow", "textColor", "#ffdd33"),
                ("Outline or Shadow", "Outline", "edge", "outline"),
                ("Background Color", "Black", "background", "#000000"),
                ("Corners", "Square", "corner", 0),
                ("Translation Color", "Light Blue", "translationColor", "#9eceff"),
                ("Translation Size", "80%", "translationRatio", 0.8),
                ("Order", "Translation First", "order", "translation")):
            self.choose(label, entry)
            self.wait_for_change("calm", key, value)
        self.settings.find("slider", "Background Opacity").set_value(40)
        self.wait_for_change("calm", "opacity", 0.4)
        self.choose("Text Size", "24pt")
        self.wait_for_preference("fontSize", 24)
        self.choose("Height", "2 Lines")
        self.wait_for_preference("captionLines", 2)
        self.choose("Preview On", "Dark")
        self.settings.find("check box", "Follow the desktop’s high contrast").toggle()
        self.wait_for_preference("followsHighContrast", False)
        font = self.settings.find("combo box", label="Font")
        family = font.entries()[1]
        font.choose(family)
        self.wait_for_change("calm", "fontFamily", family)

        self.settings.find("push button", "Reset This Set").press()
        self.wait_for_preference("panelStyle.calm", "")
        self.choose("Ready Set", "Subtitle")
        self.wait_for_preference("panelSet", "subtitle")
        self.quit()

    def test_low_contrast_is_said(self):
        self.choose("Text Color", "Charcoal")
        notice = self.settings.wait_for("notification")
        self.assertRegex(notice.name, r"^Contrast 1\.\d:1, below 4\.5:1")
        self.choose("Text Color", "White")
        self.wait("the notice to go", lambda: not notice.exists or not notice.is_showing)
        self.quit()

    def test_the_panel_follows_at_once(self):
        self.program.action("show-panel")
        # The settings stay active.
        panel = self.application.wait_for("frame", "Velun Captions")
        height = panel.extents[3]
        self.choose("Height", "1 Line")
        self.wait("a lower panel", lambda: panel.extents[3] < height)
        self.choose("Height", "Any Size")
        self.wait("the earlier panel", lambda: panel.extents[3] == height)
        self.quit()


if __name__ == "__main__":
    unittest.main()
