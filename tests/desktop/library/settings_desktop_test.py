"""The settings window of the real program: every control, its effect, and what is kept."""

import unittest

from program_case import ProgramCase


class Settings(ProgramCase):
    def setUp(self):
        super().setUp()
        self.launch()
        self.settings = self.open_window("show-settings", "Velun Settings")

    def test_toggles_write_their_settings_at_once(self):
        for title, key in (("Keep caption window on top", "keepOnTop"),
                           ("Hide caption window from screen sharing and recording",
                            "hideFromScreenSharing"),
                           ("Live Translation", "translate"),
                           ("Show Translation Only", "showTranslationOnly"),
                           ("Save new sessions automatically", "autoSaveSessions"),
                           ("Ask to save before a new session or quitting",
                            "askBeforeDiscarding")):
            with self.subTest(title):
                toggle = self.settings.wait_for("check box", title)
                before = toggle.is_checked
                for wanted in (not before, before):
                    toggle.toggle()
                    self.wait_for_preference(key, wanted)
                    self.assertEqual(toggle.is_checked, wanted)
        self.quit()

    def test_choosers_write_their_settings_at_once(self):
        def chooser(label):
            return self.settings.wait_for("combo box", label=label)

        chooser("Input Source").choose("Microphone")
        self.wait_for_preference("useMic", True)
        self.program.wait_for_state("input", "microphone")
        chooser("Font Size").choose("30pt")
        self.wait_for_preference("fontSize", 30)
        chooser("Translation Language").choose("Spanish")
        self.wait_for_preference("targetID", "es")
        self.quit()


if __name__ == "__main__":
    unittest.main()
