"""The packaged program in a session, started and reached as a desktop does it."""

import dbus

from velun_program import APPLICATION, VelunProgram

WATCHER = "org.kde.StatusNotifierWatcher"


class PackagedProgram(VelunProgram):
    def __init__(self, session):
        super().__init__(session, "/usr/bin/velun")
        self._session = session

    def launch(self):
        """Starts it as the desktop's menu does: over the bus, by its desktop entry."""
        self._session.run("gapplication", "launch", APPLICATION)
        self._session.wait("the program", self.owns_name)
        self._session.wait("its actions", self.state)

    def quit(self):
        self.action("quit")
        self._session.wait("the program to end", lambda: not self.owns_name())

    def show_panel(self, visible=True):
        if self.state().get("toggle-panel") != visible:
            self.action("toggle-panel")
            self.wait_for_state("toggle-panel", visible)
        self._session.steady_picture()

    def icon_name(self):
        """What the icon on the bar is called; empty if it is a picture, none without an item."""
        item = self._item()
        if not item:
            return None
        text = self._get(item, "IconName")
        return text.split("'")[1] if "'" in text else ""

    def menu(self):
        """The entries of the icon's menu as the bar gets them: number, title, is enabled."""
        bus = dbus.bus.BusConnection(self._session.environment["DBUS_SESSION_BUS_ADDRESS"])
        try:
            service, path = self._item()
            place = bus.call_blocking(service, path, "org.freedesktop.DBus.Properties", "Get",
                                      "ss", ("org.kde.StatusNotifierItem", "Menu"))
            menu = (service, str(place), "com.canonical.dbusmenu")
            bus.call_blocking(*menu, "AboutToShow", "i", (0,))
            _, (_, _, children) = bus.call_blocking(*menu, "GetLayout", "iias", (0, -1, []))
            return [(int(number), str(values["label"]).replace("_", ""),
                     bool(values.get("enabled", True)))
                    for number, values, _ in children if values.get("type") != "separator"]
        finally:
            bus.close()

    def offers(self, title):
        """Whether the menu has the entry and it is enabled."""
        return any(entry == title and enabled for _, entry, enabled in self.menu())

    def choose(self, title):
        """Chooses an entry as the bar does it, once it is enabled."""
        self._session.wait(f"the command {title}", lambda: self.offers(title))
        number = next(number for number, entry, _ in self.menu() if entry == title)
        service, path = self._item()
        place = self._get((service, path), "Menu").split("'")[1]
        self._session.run("gdbus", "call", "--session", "--dest", service, "--object-path", place,
                          "--method", "com.canonical.dbusmenu.Event", number, "clicked",
                          "<int32 0>", 0)

    def _get(self, item, name):
        service, path = item
        return self._session.run("gdbus", "call", "--session", "--dest", service, "--object-path",
                                 path, "--method", "org.freedesktop.DBus.Properties.Get",
                                 "org.kde.StatusNotifierItem", name)

    def _item(self):
        text = self._session.run("gdbus", "call", "--session", "--dest", WATCHER, "--object-path",
                                 "/StatusNotifierWatcher", "--method",
                                 "org.freedesktop.DBus.Properties.Get", WATCHER,
                                 "RegisteredStatusNotifierItems")
        for entry in text.split("'")[1::2]:
            service, _, path = entry.replace("@", "").partition("/")
            item = (service, "/" + path) if path else (service, "/StatusNotifierItem")
            if "Velun" in self._get(item, "Id") or "velun" in self._get(item, "Id"):
                return item
        return None
