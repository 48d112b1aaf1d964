"""The real program on a desktop of its own: launch, one instance, actions, trays, quit."""

import os
import re
import unittest
from pathlib import Path

from private_desktop import PrivateDesktop
from velun_program import VelunProgram

EXECUTABLE = os.environ["VELUN_PROGRAM"]
HERE = Path(__file__).resolve().parent
PANEL = "Velun Captions"


class Life(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(PrivateDesktop())
        self.program = VelunProgram(self.desktop, EXECUTABLE)

    def quit(self):
        self.assertEqual(self.program.quit(), 0, self.program.log())
        self.assertFalse(self.program.owns_name())

    def test_without_a_tray_the_panel_is_shown_with_the_reason(self):
        self.program.launch()
        self.desktop.wait_for_window(PANEL)
        self.desktop.wait_for_window("Velun")
        self.quit()

    def test_the_reason_is_told_once(self):
        self.program.write_preferences(statusItemExplained=True)
        self.program.launch()
        self.desktop.wait_for_window(PANEL)
        self.assertNotIn("Velun", self.desktop.windows())
        self.quit()

    def test_a_second_launch_shows_the_panel_of_the_first(self):
        self.desktop.start_tray()
        self.program.launch()
        self.assertNotIn(PANEL, self.desktop.windows())
        second = self.desktop.start([EXECUTABLE])
        self.assertEqual(second.wait(20), 0)
        self.desktop.wait_for_window(PANEL)
        self.assertIsNone(self.program.process.poll())
        self.quit()

    def test_actions_change_the_state(self):
        self.program.launch()
        self.assertEqual(self.program.state()["running"], False)
        self.assertEqual(self.program.state()["input"], "computer")
        self.program.action("input", "microphone")
        self.program.wait_for_state("input", "microphone")
        self.program.action("select-computer")
        self.program.wait_for_state("input", "computer")
        self.program.action("toggle-keep-on-top")
        self.program.wait_for_state("toggle-keep-on-top", False)
        self.program.action("show-panel")
        self.program.wait_for_state("toggle-panel", True)
        self.program.action("toggle-panel")
        self.program.wait_for_state("toggle-panel", False)
        self.quit()

    def test_windows_open_by_action(self):
        self.program.launch()
        for action, title in (("show-settings", "Velun Settings"),
                              ("show-history", "Velun — Saved Sessions"),
                              ("show-about", "About Velun"),
                              ("check-for-updates", "Velun — Updates")):
            self.program.action(action)
            self.desktop.wait_for_window(title)
        self.quit()

    def test_without_sound_captions_say_so_and_stop(self):
        self.program.launch()
        self.program.action("toggle-captions")
        self.desktop.wait_for_window(PANEL)
        self.program.wait_for_state("running", False)
        self.assertIsNone(self.program.process.poll(), self.program.log())
        self.quit()

    def test_a_damaged_preference_file_is_set_aside(self):
        self.program.preferences.parent.mkdir(parents=True)
        self.program.preferences.write_text('{"useMic": tr')
        self.program.launch()
        self.assertEqual(self.program.state()["input"], "computer")
        self.assertTrue((self.program.preferences.parent / "preferences.json.damaged").exists())
        self.quit()

    def test_an_unwritable_home_does_not_keep_it_from_running(self):
        for name in ("DATA", "CONFIG", "CACHE", "STATE"):
            # A file in place of the folder: also the superuser cannot write below it.
            path = self.desktop.root / f"no-{name}"
            path.write_text("")
            self.desktop.environment[f"XDG_{name}_HOME"] = str(path)
        self.program.launch()
        self.program.action("input", "microphone")
        self.program.wait_for_state("input", "microphone")
        self.quit()

    def test_without_a_bus_it_runs_and_ends_on_a_signal(self):
        del self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent"
        self.program.start()
        self.desktop.wait_for_window(PANEL)
        self.assertEqual(self.program.terminate(), 0)

    def test_signals_end_it_cleanly(self):
        for times in (1, 2):
            self.program.launch()
            self.assertEqual(self.program.terminate(times), 0, self.program.log())

    def test_an_embedding_tray_gets_the_icon(self):
        self.desktop.start_tray()
        self.program.launch()
        self.desktop.wait("the icon", lambda: self.embedded_icons())
        self.assertNotIn(PANEL, self.desktop.windows())
        self.quit()

    def test_a_tray_that_comes_later_gets_the_icon(self):
        self.program.launch()
        self.desktop.wait_for_window(PANEL)
        self.assertFalse(self.embedded_icons())
        self.desktop.start_tray()
        self.desktop.wait("the icon", lambda: self.embedded_icons())
        self.quit()

    def embedded_icons(self):
        """Small windows of the program inside those of the tray."""
        tree = self.desktop.run("xwininfo", "-root", "-tree")
        own = re.search(r"0x([0-9a-f]+) \"Qt Selection Owner for app\.velun", tree)
        if not own:
            return []
        base = int(own[1], 16) & ~0x1fffff
        return [number for number, width in re.findall(r"^ {10,}0x([0-9a-f]+) .*?  (\d+)x\d+\+",
                                                       tree, re.M)
                if int(number, 16) & ~0x1fffff == base and int(width) in range(16, 33)]


class BusTray(unittest.TestCase):
    """With a StatusNotifier host."""

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(PrivateDesktop())
        cls.host = cls.desktop.start(["/usr/bin/python3", HERE / "status_notifier_host.py"],
                                     stdin=-1, stdout=-1, text=True, bufsize=1)
        assert cls.host.stdout.readline().strip() == "ready"
        cls.program = VelunProgram(cls.desktop, EXECUTABLE)
        cls.program.write_preferences(translate=False)
        cls.program.launch()
        assert cls.ask("item") == "there"

    @classmethod
    def ask(cls, command):
        cls.host.stdin.write(command + "\n")
        return cls.host.stdout.readline().strip()

    def menu(self):
        """Title → (enabled, checked)."""
        items = {}
        for entry in self.ask("menu").split("\t"):
            title, enabled, checked = entry.split("|")
            items[title] = (enabled == "1", checked == "1")
        return items

    def test_the_menu_follows_the_state(self):
        menu = self.menu()
        self.assertEqual(list(menu), [
            "Start Captions", "Computer Audio", "Microphone", "Keep on Top", "Show Caption Window",
            "Restore Default Position", "Save Current Session", "Saved Sessions…", "New Session",
            "Settings…", "Check for Updates…", "Quit Velun"])
        self.assertEqual(menu["Computer Audio"], (True, True))
        self.assertEqual(menu["Save Current Session"], (False, False))
        self.ask("click Microphone")
        self.program.wait_for_state("input", "microphone")
        self.assertEqual(self.menu()["Microphone"], (True, True))
        self.assertEqual(self.menu()["Computer Audio"], (True, False))
        self.ask("click Computer Audio")
        self.program.wait_for_state("input", "computer")
        self.ask("click Show Caption Window")
        self.program.wait_for_state("toggle-panel", True)
        self.assertIn("Hide Caption Window", self.menu())
        self.ask("click Hide Caption Window")
        self.program.wait_for_state("toggle-panel", False)
        self.ask("click Keep on Top")
        self.program.wait_for_state("toggle-keep-on-top", False)
        self.assertEqual(self.menu()["Keep on Top"], (True, False))

    def test_the_tool_tip_says_the_state(self):
        self.assertEqual(self.ask("tip"), "Velun · Captions Stopped")

    def test_windows_open_from_the_menu(self):
        for item, title in (("Settings…", "Velun Settings"),
                            ("Saved Sessions…", "Velun — Saved Sessions"),
                            ("Check for Updates…", "Velun — Updates")):
            self.ask(f"click {item}")
            self.desktop.wait_for_window(title)

    def test_z_quit_ends_it(self):
        self.ask("click Quit Velun")
        self.assertEqual(self.program.process.wait(30), 0, self.program.log())


if __name__ == "__main__":
    unittest.main()
