"""The settings window of the real program: every control, its effect and its stored value."""

import re
import unittest
from datetime import datetime

import session_files
from opener import Opener
from program_case import ProgramCase
from session_files import UTC

# The page of each, its title, its key and its default.
TOGGLES = [("Captions", "Numbers as digits", "numbersAsDigits", True),
           ("Captions", "Keep caption window on top", "keepOnTop", True),
           ("Captions", "Let clicks through the caption window", "clickThrough", False),
           ("Captions", "Hide caption window from screen sharing and recording",
            "hideFromScreenSharing", False),
           ("Translation", "Live Translation", "translate", False),
           ("Translation", "Show Translation Only", "showTranslationOnly", False),
           ("Sessions", "Save new sessions automatically", "autoSaveSessions", False),
           ("Sessions", "Ask to save before a new session or quitting", "askBeforeDiscarding",
            True)]
PAGES = {
    "General": [
        ("label", "Language · 언어"),
        ("check box", "Start at Login"),
        ("label", "Keys in Every Window"),
        ("label", "Start or Stop Captions"),
        ("label", "Show or Hide the Caption Window"),
        ("label", "Click Through Captions"),
        ("label", "Bigger Text"),
        ("label", "Smaller Text"),
        ("label", "These keys work while any window is in front.")],
    "Captions": [
        ("label", "Captions"),
        ("label", "Input Source"),
        ("label", "Device"),
        ("label", "Recognition Language"),
        ("check box", "Numbers as digits"),
        ("label", "English captions say “12%” instead of “twelve percent”."),
        ("label", "Names and Terms"),
        ("label", "Captions prefer these words where they sound alike. The list stays on this "
                  "computer and applies from the next start of captions."),
        ("check box", "Show who speaks"),
        ("label", "This needs a speaker model, which is not installed."),
        ("push button", "Install a Speaker Model…"),
        ("label", "Caption Window"),
        ("label", "Font Size"),
        ("check box", "Keep caption window on top"),
        ("check box", "Let clicks through the caption window"),
        ("label", "They reach the window beneath. Starting Velun once more ends this, and so "
                  "does the status icon’s menu."),
        ("check box", "Hide caption window from screen sharing and recording"),
        # Without PipeWire nothing is promised.
        ("label", "This desktop offers no way to hide a window from screen sharing and "
                  "recording. Close the caption window while you share your screen.")],
    "Translation": [
        ("label", "Translation"),
        ("check box", "Live Translation"),
        ("label", "Translation Language"),
        ("check box", "Show Translation Only")],
    "Sessions": [
        ("label", "Saving Sessions"),
        ("check box", "Save new sessions automatically"),
        ("label", "Sessions are saved only when you click Save Session; later captions are "
                  "then saved too. Auto-save applies from the next new session."),
        ("check box", "Ask to save before a new session or quitting"),
        ("label", "Unsaved captions are kept in memory only and are lost when the app quits. "
                  "Audio is never saved."),
        ("check box", "Name sessions after their first sentence"),
        ("push button", "Open Sessions Folder"),
        ("label", "For Other Programs"),
        ("check box", "Offer captions to other programs"),
        ("label", "While captions run, every program of your desktop session can read them over "
                  "D-Bus. Nothing leaves this computer."),
        ("label", "Caption File"),
        ("push button", "Choose Caption File…"),
        ("push button", "Write No Caption File"),
        ("label", "The last finished lines, for the text source of streaming software. The file "
                  "is replaced with every line."),
        ("label", "Lines in the File"),
        ("label", "When Captions Stop")]}
LANGUAGE = "Language · 언어"


class SettingsCase(ProgramCase):
    def open_settings(self, title="Velun Settings"):
        self.settings = self.open_window("show-settings", title)

    def page(self, title):
        self.show_page(self.settings, title)

    def chooser(self, label):
        return self.settings.wait_for("combo box", label=label)

    def languages(self, label, known):
        """Waits for the list of target languages and returns it: first those that are ready, then
        the others, both sorted by name."""
        entries = []

        def are_in_order():
            entries[:] = self.chooser(label).entries()
            falls = sum(after < before for before, after in zip(entries, entries[1:]))
            return len(entries) > 1 and known in entries and falls <= 1

        self.wait("the languages in their order", are_in_order)
        return entries

    def toggle(self, title):
        return self.settings.wait_for("check box", title)


class Controls(SettingsCase):
    def setUp(self):
        super().setUp()
        self.launch()
        self.open_settings()

    def shown(self):
        return [(node.role, node.name) for node in self.settings.walk() if node.is_showing
                and node.role in ("label", "check box", "push button")]

    def test_pages_have_their_controls_and_notes_in_order(self):
        rows = self.settings.find("list", "Settings Pages").children
        self.assertEqual([row.name for row in rows],
                         ["General", "Captions", "Appearance", "Languages & Models",
                          "Translation", "Sessions"])
        for page, controls in PAGES.items():
            self.page(page)
            self.wait(f"the page {page}", lambda first=controls[0]: first in self.shown())
            self.assertEqual(self.shown(), controls)
            for title, note in (("Hide caption window from screen sharing and recording", -1),
                                ("Save new sessions automatically", 2),
                                ("Ask to save before a new session or quitting", 4)):
                if ("check box", title) in controls:
                    self.assertEqual(self.settings.find("check box", title).description,
                                     controls[note][1])
        self.assertEqual(self.settings.extents[2:], (640, 620))
        self.quit()

    def test_choosers_offer_their_values(self):
        self.assertEqual(self.chooser(LANGUAGE).entries(), ["English", "한국어"])
        self.page("Captions")
        self.assertEqual(self.chooser("Input Source").entries(),
                         ["Computer Audio", "Microphone", "Computer and Microphone"])
        self.assertEqual(self.chooser("Font Size").entries(),
                         ["9pt", "11pt", "13pt", "16pt", "20pt", "24pt", "30pt"])
        self.assertEqual(self.chooser("Font Size").name, "16pt")
        self.assertEqual(self.chooser("Recognition Language").name, "English (United States)")
        self.page("Translation")
        self.languages("Translation Language", "Korean")
        self.quit()

    def test_toggles_write_their_settings_at_once(self):
        for page, title, key, before in TOGGLES:
            self.page(page)
            toggle = self.toggle(title)
            self.assertEqual(toggle.is_checked, before, title)
            for wanted in (not before, before):
                toggle.toggle()
                self.wait_for_preference(key, wanted)
                self.assertEqual(toggle.is_checked, wanted)
        self.quit()

    def test_choosers_write_their_settings_at_once(self):
        self.page("Captions")
        self.chooser("Input Source").choose("Microphone")
        self.wait_for_preference("useMic", True)
        self.program.wait_for_state("input", "microphone")
        self.chooser("Font Size").choose("30pt")
        self.wait_for_preference("fontSize", 30)
        self.page("Translation")
        self.chooser("Translation Language").choose("Spanish")
        self.wait_for_preference("targetID", "es")
        self.quit()

    def test_names_and_terms_are_stored_and_those_that_are_unknown_are_told(self):
        self.page("Captions")
        names = self.settings.wait_for("text", "Names and Terms")
        names.set_text("Huebner\nZzyzx")
        self.wait_for_preference("userWords", "Huebner\nZzyzx")
        self.settings.wait_for("label", "The built-in recognizer cannot learn new words and does "
                                        "not know: Zzyzx")
        self.quit()

    def test_changes_made_elsewhere_are_shown(self):
        self.page("Captions")
        self.program.action("input", "microphone")
        self.wait("the input", lambda: self.chooser("Input Source").name == "Microphone")
        self.program.action("toggle-keep-on-top")
        self.wait("the toggle",
                  lambda: not self.toggle("Keep caption window on top").is_checked)
        self.quit()

    def test_keeping_on_top_reaches_the_window_at_once(self):
        self.program.action("show-panel")
        self.desktop.wait_for_window("Velun Captions")
        # The panel yields to a window of the program that overlaps it.
        for title, left in (("Velun Settings", 0), ("Velun Captions", 700)):
            self.desktop.run("xdotool", "search", "--onlyvisible", "--name", f"^{title}$",
                             "windowmove", left, 30)

        def is_above():
            return "_NET_WM_STATE_ABOVE" in self.desktop.run(
                "xprop", "-name", "Velun Captions", "_NET_WM_STATE")

        self.wait("the panel to be above", is_above)
        self.page("Captions")
        toggle = self.toggle("Keep caption window on top")
        toggle.toggle()
        self.wait("the panel not to be above", lambda: not is_above())
        toggle.toggle()
        self.wait("the panel to be above again", is_above)
        self.quit()

    def test_the_font_size_reaches_open_transcripts_at_once(self):
        session_files.write(self.program.sessions, session_files.session(
            "Evening talk", datetime(2024, 3, 5, 9, 30, tzinfo=UTC), session_files.TEAM))
        library = self.open_window("show-history", "Velun — Saved Sessions")
        listed = library.wait_for("list", "Saved Sessions")
        self.wait("the session", lambda: len(listed.children) > 1)
        listed.children[1].select()
        view = library.wait_for("text", "Caption Text")
        self.wait("the transcript", lambda: "Let us" in view.text)

        def height():
            return view.character_extents(view.text.index("Let us"))[3]

        self.wait("the text", lambda: height() > 0)
        before = height()
        self.open_settings()
        self.page("Captions")
        self.chooser("Font Size").choose("30pt")
        self.wait("larger text", lambda: height() > 1.6 * before)
        self.chooser("Font Size").choose("9pt")
        self.wait("smaller text", lambda: 0 < height() < before)
        self.quit()

    def test_everything_is_kept_after_a_restart(self):
        for page, title, _, _ in TOGGLES:
            self.page(page)
            self.toggle(title).toggle()
        self.page("Captions")
        self.chooser("Input Source").choose("Microphone")
        self.chooser("Font Size").choose("11pt")
        self.page("Translation")
        self.chooser("Translation Language").choose("Spanish")
        self.quit()
        self.launch()
        self.open_settings()
        for page, title, _, before in TOGGLES:
            self.page(page)
            self.assertEqual(self.toggle(title).is_checked, not before, title)
        self.page("Captions")
        self.assertEqual(self.chooser("Input Source").name, "Microphone")
        self.assertEqual(self.chooser("Font Size").name, "11pt")
        self.page("Translation")
        self.assertEqual(self.chooser("Translation Language").name, "Spanish")
        self.program.wait_for_state("toggle-keep-on-top", False)
        self.quit()


class SessionsFolder(SettingsCase):
    def test_the_folder_is_created_and_opened(self):
        opener = Opener(self.desktop)
        self.launch()
        self.open_settings()
        self.assertFalse(self.program.sessions.exists())
        self.page("Sessions")
        self.settings.wait_for("push button", "Open Sessions Folder").press()
        self.wait("the opened folder", lambda: opener.opened)
        self.assertEqual(opener.opened, [self.program.sessions.as_uri()])
        self.assertTrue(self.program.sessions.is_dir())
        self.quit()

    def test_the_sessions_of_an_earlier_version_are_in_it(self):
        earlier = self.program.sessions.parent.with_name("Parvelo") / "Sessions"
        earlier.mkdir(parents=True)
        (earlier / "kept.json").write_text("{}")
        opener = Opener(self.desktop)
        self.launch()
        self.program.action("open-sessions-folder")
        self.wait("the opened folder", lambda: opener.opened)
        self.assertTrue((self.program.sessions / "kept.json").exists())
        self.quit()


class Languages(SettingsCase):
    """Switching the interface language re-labels every open window at once."""

    # What is the same in both languages: names of languages and formats, and the user's own texts.
    SAME = {"Velun", "English", LANGUAGE, "Markdown (.md)", "Evening talk", "app.velun.Velun",
            "About Velun", "#ffc86e"}

    def setUp(self):
        super().setUp()
        session_files.write(self.program.sessions, session_files.session(
            "Evening talk", datetime(2024, 3, 5, 9, 30, tzinfo=UTC), session_files.RIVERS))
        (self.program.sessions / "broken.json").write_text("{")
        self.launch()

    def open_windows(self):
        self.program.action("show-panel")
        self.desktop.wait_for_window("Velun Captions")
        library = self.open_window("show-history", "Velun — Saved Sessions")
        listed = library.wait_for("list", "Saved Sessions")
        self.wait("the session", lambda: len(listed.children) > 1)
        listed.children[1].select()
        button = library.find("push button", "Export")
        self.wait("the selection", lambda: button.is_enabled)
        button.press()
        self.window("Export Session")
        self.program.action("show-about")
        self.window("About Velun")
        self.program.action("check-for-updates")
        updates = self.window("Velun — Updates")
        self.wait("the outcome", lambda: updates.find("notification", "Checking for updates…") is None)
        self.open_settings()

    def shown_names(self):
        """All visible names and descriptions, by window."""
        names = {}
        for window in self.application.children:
            if window.is_showing:
                names[window.name] = {text for node in window.walk() if node.is_showing
                                      for text in (node.name, node.description) if text}
        return names

    def test_all_open_windows_are_relabelled(self):
        self.open_windows()
        english = self.shown_names()
        self.assertLessEqual({"Velun — Saved Sessions", "Export Session", "Velun Settings",
                              "Velun Captions", "About Velun", "Velun — Updates"}, set(english))
        for window, names in english.items():
            self.assertFalse(
                [name for name in names
                 if re.search("[가-힣]", name) and name not in (LANGUAGE, "한국어")], window)
        self.chooser(LANGUAGE).choose("한국어")
        self.wait_for_preference("language", "ko")
        self.wait("the windows in Korean", lambda: {"Velun — 저장 기록", "세션 내보내기",
                                                    "Velun 설정"} <= set(self.shown_names()))
        korean = self.shown_names()
        self.assertEqual(len(korean), len(english))
        for window, names in korean.items():
            self.assertFalse([name for name in names - self.SAME
                              if self.is_english(name) and not self.is_font(name)], window)
        self.chooser(LANGUAGE).choose("English")
        self.wait("the windows in English", lambda: self.shown_names() == english)
        self.quit()

    def is_font(self, name):
        """The page "Appearance" lists the fonts; Qt adds their foundry where two have a name."""
        families = re.split("[,\n]", self.desktop.run("fc-list", ":", "family"))
        return name.partition(" [")[0] in [*families, "Monospace", "Sans Serif", "Serif"]

    @staticmethod
    def is_english(name):
        return re.search("[A-Za-z]{3}", name) and not re.search("[가-힣]", name)

    def test_the_lists_are_sorted_by_their_names_in_the_language(self):
        self.open_settings()
        self.page("Translation")
        english = self.languages("Translation Language", "Korean")
        self.page("General")
        self.chooser(LANGUAGE).choose("한국어")
        self.page("번역")
        self.settings.wait_for("label", "번역 언어")
        self.assertEqual(len(self.languages("번역 언어", "한국어")), len(english))
        self.assertEqual(self.chooser("번역 언어").name, "한국어")
        self.quit()


if __name__ == "__main__":
    unittest.main()
