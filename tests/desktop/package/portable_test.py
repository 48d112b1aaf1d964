"""The portable archive on a newer Debian, which has another Qt: it runs and captions speech."""

import os
import shutil
import unittest
from pathlib import Path

from bare_system import BareSystem, missing
from packaged_captions import caption
from private_desktop import PrivateDesktop
from velun_program import VelunProgram

# Every desktop has them.
OF_A_DESKTOP = ("libegl1", "libfontconfig1", "libgl1", "libopengl0", "libpipewire-0.3-0t64",
                "pipewire", "wireplumber", "libglib2.0-0t64", "libdbus-1-3", "libxcb-randr0", "libxcb-shape0",
                "libx11-xcb1", "libxcb-shm0", "libxcb-sync1", "libxcb-xfixes0", "libxcb-render0",
                "libharfbuzz0b", "fonts-dejavu-core")


class NewerDesktop(PrivateDesktop):
    """A desktop with the sound server of the other system: older and newer parts of PipeWire do not
    exchange sound.
    """

    system = None

    def start(self, command, log=None, **options):
        if command[0] in ("pipewire", "wireplumber"):
            command = self.system.inside(*command)
        return super().start(command, log, **options)


def archive():
    made = sorted(Path(os.environ["VELUN_PACKAGES"]).glob("velun-*.tar.xz"),
                  key=lambda path: path.stat().st_mtime)
    assert made, "Make the archive first, with scripts/package --portable"
    return made[-1]


@unittest.skipIf(missing(), missing())
class OnANewerSystem(unittest.TestCase):
    def test_it_runs_and_captions(self):
        system = self.enterContext(BareSystem("trixie"))
        desktop = self.enterContext(NewerDesktop())
        desktop.system = system
        system.run("apt-get", "install", "-y", "--no-install-recommends", *OF_A_DESKTOP)
        shutil.unpack_archive(archive(), system.root / "opt")
        folder = next((system.root / "opt").glob("velun-*"))
        inside = "/" + str(folder.relative_to(system.root))
        self.assertFalse(list(system.root.glob("usr/lib/*/libQt6Core.so*")))
        program = VelunProgram(desktop, f"{inside}/velun")
        program.prefix = system.inside()
        self.assertEqual(caption(desktop, program), "Thank you for your time.")

    def test_it_adds_itself_to_the_menu_and_leaves_it(self):
        desktop = self.enterContext(PrivateDesktop())
        shutil.unpack_archive(archive(), desktop.root)
        folder = next(desktop.root.glob("velun-*"))
        data = desktop.home / "data"
        desktop.run(folder / "add-to-menu")
        entry = (data / "applications/app.velun.Velun.desktop").read_text()
        self.assertIn(f"\nExec={folder}/bin/velun", entry)
        self.assertIn(f"\nExec={folder}/bin/velun",
                      (data / "dbus-1/services/app.velun.Velun.service").read_text())
        program = VelunProgram(desktop, folder / "velun")
        desktop.run("dbus-update-activation-environment", "--all")
        desktop.run("gapplication", "launch", "app.velun.Velun")
        desktop.wait("the program", program.owns_name)
        program.action("quit")
        desktop.wait("its end", lambda: not program.owns_name())
        desktop.run(folder / "add-to-menu", "remove")
        self.assertEqual([path for path in data.rglob("app.velun*") if path.is_file()], [])


if __name__ == "__main__":
    unittest.main()
