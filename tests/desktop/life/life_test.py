"""The real program on a desktop of its own: launch, one instance, actions, trays, quit."""

import re
import time
import unittest

from desktop import HERE, PROGRAM, Desktop

PANEL = "Velun Captions"


class Life(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop())

    def quit(self, program):
        self.desktop.action("quit")
        self.assertEqual(program.wait(20), 0, self.desktop.log())
        self.assertFalse(self.desktop.owns_name())

    def test_without_a_tray_the_panel_is_shown_with_the_reason(self):
        program = self.desktop.launch()
        self.desktop.wait_for_window(PANEL)
        self.desktop.wait_for_window("Velun")
        self.quit(program)

    def test_the_reason_is_told_once(self):
        self.desktop.write_preferences(statusItemExplained=True)
        program = self.desktop.launch()
        self.desktop.wait_for_window(PANEL)
        self.assertNotIn("Velun", self.desktop.windows())
        self.quit(program)

    def test_a_second_launch_shows_the_panel_of_the_first(self):
        self.desktop.start(["trayer"])
        program = self.desktop.launch()
        self.assertNotIn(PANEL, self.desktop.windows())
        second = self.desktop.start([PROGRAM])
        self.assertEqual(second.wait(20), 0)
        self.desktop.wait_for_window(PANEL)
        self.assertIsNone(program.poll())
        self.quit(program)

    def test_actions_change_the_state(self):
        program = self.desktop.launch()
        self.assertEqual(self.desktop.state()["running"], False)
        self.assertEqual(self.desktop.state()["input"], "computer")
        self.desktop.action("input", "microphone")
        self.desktop.wait_for_state("input", "microphone")
        self.desktop.action("select-computer")
        self.desktop.wait_for_state("input", "computer")
        self.desktop.action("toggle-keep-on-top")
        self.desktop.wait_for_state("toggle-keep-on-top", False)
        self.desktop.action("show-panel")
        self.desktop.wait_for_state("toggle-panel", True)
        self.desktop.action("toggle-panel")
        self.desktop.wait_for_state("toggle-panel", False)
        self.quit(program)

    def test_windows_open_by_action(self):
        program = self.desktop.launch()
        for action, title in (("show-settings", "Velun Settings"),
                              ("show-history", "Velun — Saved Sessions"),
                              ("show-about", "About Velun"),
                              ("check-for-updates", "Velun — Updates")):
            self.desktop.action(action)
            self.desktop.wait_for_window(title)
        self.quit(program)

    def test_without_sound_captions_say_so_and_stop(self):
        program = self.desktop.launch()
        self.desktop.action("toggle-captions")
        self.desktop.wait_for_window(PANEL)
        time.sleep(0.2)
        self.desktop.wait_for_state("running", False)
        self.assertIsNone(program.poll(), self.desktop.log())
        self.quit(program)

    def test_a_damaged_preference_file_is_set_aside(self):
        self.desktop.preferences.parent.mkdir(parents=True)
        self.desktop.preferences.write_text('{"useMic": tr')
        program = self.desktop.launch()
        self.assertEqual(self.desktop.state()["input"], "computer")
        self.assertTrue((self.desktop.preferences.parent / "preferences.json.damaged").exists())
        self.quit(program)

    def test_an_unwritable_home_does_not_keep_it_from_running(self):
        for name in ("DATA", "CONFIG", "CACHE", "STATE"):
            # A file in place of the folder: also the superuser cannot write below it.
            path = self.desktop.root / f"no-{name}"
            path.write_text("")
            self.desktop.environment[f"XDG_{name}_HOME"] = str(path)
        program = self.desktop.launch()
        self.desktop.action("input", "microphone")
        self.desktop.wait_for_state("input", "microphone")
        self.quit(program)

    def test_without_a_bus_it_runs_and_ends_on_a_signal(self):
        del self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent"
        program = self.desktop.start([PROGRAM])
        self.desktop.wait_for_window(PANEL)
        self.assertEqual(self.desktop.terminate(program), 0)

    def test_signals_end_it_cleanly(self):
        for times in (1, 2):
            program = self.desktop.launch()
            self.assertEqual(self.desktop.terminate(program, times), 0, self.desktop.log())

    def test_an_embedding_tray_gets_the_icon(self):
        self.desktop.start(["trayer", "--width", "10"])
        program = self.desktop.launch()
        self.desktop.wait("the icon", lambda: self.embedded_icons())
        self.assertNotIn(PANEL, self.desktop.windows())
        self.quit(program)

    def test_a_tray_that_comes_later_gets_the_icon(self):
        program = self.desktop.launch()
        self.desktop.wait_for_window(PANEL)
        self.assertFalse(self.embedded_icons())
        self.desktop.start(["trayer", "--width", "10"])
        self.desktop.wait("the icon", lambda: self.embedded_icons())
        self.quit(program)

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
        cls.desktop = cls.enterClassContext(Desktop())
        cls.host = cls.desktop.start(["/usr/bin/python3", str(HERE / "status_notifier_host.py")],
                                     stdin=-1, stdout=-1, text=True, bufsize=1)
        assert cls.host.stdout.readline().strip() == "ready"
        cls.desktop.write_preferences(translate=False)
        cls.program = cls.desktop.launch()
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
        self.desktop.wait_for_state("input", "microphone")
        self.assertEqual(self.menu()["Microphone"], (True, True))
        self.assertEqual(self.menu()["Computer Audio"], (True, False))
        self.ask("click Computer Audio")
        self.desktop.wait_for_state("input", "computer")
        self.ask("click Show Caption Window")
        self.desktop.wait_for_state("toggle-panel", True)
        self.assertIn("Hide Caption Window", self.menu())
        self.ask("click Hide Caption Window")
        self.desktop.wait_for_state("toggle-panel", False)
        self.ask("click Keep on Top")
        self.desktop.wait_for_state("toggle-keep-on-top", False)
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
        self.assertEqual(self.program.wait(20), 0, self.desktop.log())


if __name__ == "__main__":
    unittest.main()
