"""The two kinds of tray, the program's icon in them, and its menu."""

import re
from pathlib import Path

from private_desktop import end

HOST = Path(__file__).resolve().parent / "status_notifier_host.py"
LARGEST_ICON = 32  # pixels


class EmbeddedTray:
    """An XEmbed tray: it embeds the windows of icons."""

    def __init__(self, desktop):
        self._desktop = desktop
        self.start()

    def start(self):
        self._process = self._desktop.start_tray()

    def stop(self):
        end(self._process)

    def close(self):
        pass

    def icon(self):
        """The program's window inside the tray's; none if there is none."""
        tree = self._desktop.run("xwininfo", "-root", "-tree")
        own = re.search(r'0x([0-9a-f]+) "Qt Selection Owner for app\.velun', tree)
        if not own:
            return None
        base = int(own[1], 16) & ~0x1fffff
        for number, width in re.findall(r"^ {10,}0x([0-9a-f]+) .*?  (\d+)x\d+\+", tree, re.M):
            if int(number, 16) & ~0x1fffff == base and 16 <= int(width) <= LARGEST_ICON:
                return int(number, 16)
        return None

    def wait_for_icon(self):
        """Waits until the icon stands still: the tray moves icons when it makes room."""
        places = []

        def has_settled():
            icon = self.icon()
            places.append(icon and self._desktop.run("xwininfo", "-id", icon))
            return len(places) > 10 and len(set(places[-10:])) == 1 and icon

        return self._desktop.wait("the icon", has_settled)

    def click(self, button=1, key=None, times=1):
        held = ["keydown", key] if key else []
        released = ["keyup", key] if key else []
        self._desktop.run("xdotool", "mousemove", "--window", self.wait_for_icon(), 8, 8, *held,
                          "click", "--repeat", times, "--delay", 100, button, *released)


class BusTray:
    """A StatusNotifier watcher and host."""

    def __init__(self, desktop):
        self._desktop = desktop
        self.start()

    def start(self):
        self._process = self._desktop.start(["/usr/bin/python3", "-B", HOST], stdin=-1, stdout=-1,
                                            stderr=None, text=True, bufsize=1)
        self._read("ready")

    def stop(self):
        end(self._process)
        self.close()

    def close(self):
        self._process.stdin.close()
        self._process.stdout.close()

    def wait_for_icon(self):
        self._ask("item", "there")

    def activate(self):
        """What most hosts do for a click."""
        self._ask("activate", "activated")

    def context(self):
        """What hosts without a menu of their own do for a right click."""
        self._ask("context", "opened")

    def tip(self):
        return self._ask("tip")

    def menu(self):
        """The menu as the host shows it: title → (enabled, checked)."""
        items = {}
        for entry in self._ask("menu").split("\t"):
            title, enabled, checked = entry.split("|")
            items[title] = (enabled == "1", checked == "1")
        return items

    def click(self, title):
        self._ask(f"click {title}", "clicked")

    def _ask(self, command, answer=None):
        self._process.stdin.write(command + "\n")
        return self._read(answer)

    def _read(self, answer=None):
        line = self._process.stdout.readline().strip()
        assert answer in (None, line), line
        return line


def open_menu(desktop):
    """The window of the menu that the program has opened; none if there is none."""
    for window in desktop.run("xdotool", "search", "--onlyvisible", "--class", "velun").split():
        about = desktop.run("xwininfo", "-id", window)
        # Menus bypass the window manager, and so does the icon, which is small.
        width = re.search(r"Width: (\d+)", about)
        if "Override Redirect State: yes" in about and int(width[1]) > LARGEST_ICON:
            return window
    return None
