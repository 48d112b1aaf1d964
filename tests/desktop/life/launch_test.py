"""Starting the real program: twice, by other programs, and without a tray, bus or sound server."""

import json
import os
import re
import signal
import subprocess
import unittest
from pathlib import Path

from spoken_case import EXECUTABLE, PlainCase, SpokenCase
from velun_program import APPLICATION
from window_titles import PANEL

INSTALLED = Path(EXECUTABLE).parent.parent / "data"
NO_NETWORK = ["unshare", "--net", *([] if os.geteuid() == 0 else ["--map-current-user"])]


class Launch(PlainCase):
    def test_a_second_launch_shows_the_panel_of_the_first(self):
        self.desktop.start_tray()
        self.program.launch()
        self.assertNotIn(PANEL, self.desktop.windows())
        second = self.desktop.start([self.program.executable])
        self.assertEqual(second.wait(20), 0)
        self.desktop.wait_for_window(PANEL)
        self.assertIsNone(self.program.process.poll())
        self.quit()

    def test_a_second_launch_reports_a_first_one_that_does_not_reply(self):
        for language, text in (("en", "Velun is running but does not respond."),
                               ("ko", "Velun이 실행 중이지만 응답하지 않습니다.")):
            with self.subTest(language=language):
                self.program.write_preferences(language=language)
                self.program.launch()
                self.program.process.send_signal(signal.SIGSTOP)
                second = self.desktop.start([self.program.executable], log="second")
                self.assertEqual(second.wait(60), 1)
                self.program.process.send_signal(signal.SIGCONT)
                self.assertEqual(
                    self.desktop.log_path("second").read_text(encoding="utf-8").strip(), text)
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

    def test_launchers_start_it_through_the_bus(self):
        desktop_file = (INSTALLED / f"{APPLICATION}.desktop").read_text()
        self.assertIn("DBusActivatable=true", desktop_file)
        actions = re.search("^Actions=(.*);$", desktop_file, re.M)[1].split(";")
        service = (INSTALLED / f"{APPLICATION}.service").read_text()
        services = self.desktop.home / "data" / "dbus-1" / "services"
        services.mkdir(parents=True)
        (services / f"{APPLICATION}.service").write_text(
            re.sub("^Exec=.*", f"Exec={self.program.executable}", service, flags=re.M))
        self.desktop.run("gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                         "--object-path", "/", "--method", "org.freedesktop.DBus.ReloadConfig")
        # Desktops do this when a session starts.
        self.desktop.run("dbus-update-activation-environment", "DISPLAY")
        self.desktop.start_tray()

        self.desktop.run("gapplication", "action", APPLICATION, "show-settings")
        self.desktop.wait_for_window("Velun Settings")
        self.assertNotIn(PANEL, self.desktop.windows())
        known = self.program.call("org.freedesktop.DBus.Properties.Get", APPLICATION, "Actions")
        self.assertEqual([action for action in actions if f"'{action}'" not in known], [])
        self.desktop.run("gapplication", "launch", APPLICATION)
        self.desktop.wait_for_window(PANEL)
        self.program.action("quit")
        self.desktop.wait("the end", lambda: not self.program.owns_name())

    def test_a_damaged_preference_file_is_set_aside(self):
        self.program.preferences.parent.mkdir(parents=True)
        self.program.preferences.write_text('{"useMic": tr')
        self.program.launch()
        self.assertEqual(self.program.state()["input"], "computer")
        self.assertTrue((self.program.preferences.parent / "preferences.json.damaged").exists())
        self.quit()

    def test_preferences_that_cannot_be_read_are_left_alone(self):
        self.program.preferences.parent.mkdir(parents=True)
        # Links in a circle cannot be read, not even by root.
        self.program.preferences.symlink_to("preferences.json")
        self.program.launch()
        self.program.action("input", "microphone")
        self.program.wait_for_state("input", "microphone")
        self.assertTrue(self.program.preferences.is_symlink())
        # As soon as the file can be read, the choice is added to it.
        self.program.preferences.unlink()
        self.program.preferences.write_text('{"fontSize": 20}')
        self.quit()
        stored = json.loads(self.program.preferences.read_text())
        self.assertEqual((stored["fontSize"], stored["useMic"]), (20, True))

    def test_it_runs_with_an_unwritable_home(self):
        for name in ("DATA", "CONFIG", "CACHE", "STATE"):
            # A file in place of the folder: not even root can write below it.
            path = self.desktop.root / f"no-{name}"
            path.write_text("")
            self.desktop.environment[f"XDG_{name}_HOME"] = str(path)
        self.program.launch()
        self.program.action("input", "microphone")
        self.program.wait_for_state("input", "microphone")
        self.quit()

    def test_without_a_bus_it_runs_and_ends_on_a_signal(self):
        self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent"
        self.program.start()
        self.desktop.wait_for_window(PANEL)
        self.assertEqual(self.program.terminate(), 0)

    def test_signals_end_it_cleanly(self):
        for times in (1, 2):
            self.program.launch()
            self.assertEqual(self.program.terminate(times), 0, self.program.log())


class WithoutSound(SpokenCase):
    SOUND = False

    def test_captions_say_so_and_stop(self):
        self.launch()
        self.expect_failure("Audio start failed. The sound server (PipeWire) is not running. "
                            "Start it, or log in again.")

    def test_without_the_settings_of_the_sound_library_too(self):
        self.desktop.environment["PIPEWIRE_CONFIG_DIR"] = str(self.desktop.root / "nothing")
        self.launch()
        self.expect_failure("Audio start failed. The configuration of the sound server "
                            "(PipeWire) is missing. Reinstall PipeWire.")

    def expect_failure(self, text):
        self.program.action("toggle-captions")
        self.desktop.wait("the status", self.status)
        self.assertEqual(self.status(), text)
        self.program.wait_for_state("running", False)
        self.program.wait_for_state("toggle-panel", True)
        self.program.action("quit")
        self.assert_ends()


class WithoutNetwork(SpokenCase):
    def test_captions_and_translation_work(self):
        if subprocess.run([*NO_NETWORK, "true"], check=False).returncode != 0:
            self.skipTest("a network of one's own is not allowed here")
        self.program.prefix = NO_NETWORK
        self.launch(translate=True, targetID="es")
        self.start_captions()
        self.speak()
        self.program.action("save-session")
        # Any translation will do: a busy machine loses some of the speech.
        self.desktop.wait("the translation", self.translations, seconds=60)
        self.program.action("quit")
        self.assert_ends()
        self.assertEqual(len(self.saved_sessions()), 1)

    def translations(self):
        return [line["translations"]["es"] for session in self.saved_sessions()
                for line in session["lines"] if line["translations"].get("es")]


if __name__ == "__main__":
    unittest.main()
