"""Traces of the real program on the disk and on the bus."""

import os
import unittest
from xml.etree import ElementTree

from spoken_case import PlainCase
from velun_program import APPLICATION, OBJECT


def mode(path):
    return oct(path.stat().st_mode & 0o7777)


class Privacy(PlainCase):
    def test_its_folders_are_the_users_alone_whatever_the_umask(self):
        was = os.umask(0)
        try:
            self.program.launch()
        finally:
            os.umask(was)
        self.program.action("input", "microphone")
        self.program.action("open-sessions-folder")
        self.desktop.wait("the preferences", self.program.preferences.exists)
        self.desktop.wait("the sessions folder", self.program.sessions.is_dir)
        for folder in (self.program.preferences.parent, self.program.sessions,
                       self.program.sessions.parent):
            self.assertEqual(mode(folder), oct(0o700), folder)
        self.assertEqual(mode(self.program.preferences), oct(0o600))
        # No program here can show the folder, and the alert about that is still open.
        self.assertEqual(self.program.terminate(), 0, self.program.log())

    def test_other_programs_can_carry_out_its_commands_and_nothing_else(self):
        self.program.launch()
        description = ElementTree.fromstring(self.desktop.run(
            "gdbus", "introspect", "--session", "--dest", APPLICATION, "--object-path", OBJECT,
            "--xml"))
        offered = {one.get("name"): one for one in description.iter("interface")}
        usual = {"org.freedesktop.DBus." + name for name in ("Introspectable", "Peer", "Properties")}
        self.assertEqual(set(offered) - usual, {"org.freedesktop.Application", APPLICATION})
        methods = [one.get("name") for one in offered["org.freedesktop.Application"].iter("method")]
        self.assertEqual(sorted(methods), ["Activate", "ActivateAction", "Open"])
        self.assertEqual([one.tag for one in offered[APPLICATION]], ["property", "property"])
        self.assertEqual({one.get("access") for one in offered[APPLICATION]}, {"read"})
        self.quit()


if __name__ == "__main__":
    unittest.main()
