"""A StatusNotifier watcher and host with a client for the item's menu. Executes the commands on its
standard input (item, tip, menu, click TITLE, activate, context) and prints one line for each.
"""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
PROPERTIES = {"IsStatusNotifierHostRegistered": dbus.Boolean(True), "ProtocolVersion": dbus.Int32(0),
              "RegisteredStatusNotifierItems": dbus.Array([], signature="s")}
# Qt reads only properties that the introspection declares.
DECLARED = "".join(f'<property name="{name}" type="{kind}" access="read"/>' for name, kind in
                   (("IsStatusNotifierHostRegistered", "b"), ("ProtocolVersion", "i"),
                    ("RegisteredStatusNotifierItems", "as")))


class Watcher(dbus.service.Object):
    def __init__(self, bus):
        self.item = None
        super().__init__(dbus.service.BusName(WATCHER, bus), "/StatusNotifierWatcher")

    @dbus.service.method(WATCHER, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, service, sender=None):
        self.item = (sender, service) if service.startswith("/") \
            else (service, "/StatusNotifierItem")

    @dbus.service.method("org.freedesktop.DBus.Introspectable", out_signature="s",
                         path_keyword="path", connection_keyword="connection")
    def Introspect(self, path, connection):
        xml = dbus.service.Object.Introspect(self, path, connection)
        return xml.replace(f'<interface name="{WATCHER}">',
                           f'<interface name="{WATCHER}">{DECLARED}')

    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return PROPERTIES[name]

    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="s",
                         out_signature="a{sv}")
    def GetAll(self, interface):
        return PROPERTIES


class Host:
    def __init__(self):
        dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
        self.bus = dbus.SessionBus()
        self.watcher = Watcher(self.bus)

    def item_property(self, name):
        service, path = self.watcher.item
        item = self.bus.get_object(service, path, introspect=False)
        return dbus.Interface(item, "org.freedesktop.DBus.Properties").Get(ITEM, name)

    def item(self):
        service, path = self.watcher.item
        return dbus.Interface(self.bus.get_object(service, path, introspect=False), ITEM)

    def menu(self):
        return dbus.Interface(self.bus.get_object(self.watcher.item[0], self.item_property("Menu"),
                                                  introspect=False), MENU)

    def entries(self):
        menu = self.menu()
        menu.AboutToShow(dbus.Int32(0))
        _, (_, _, children) = menu.GetLayout(dbus.Int32(0), dbus.Int32(-1),
                                             dbus.Array([], signature="s"))
        for number, properties, _ in children:
            if properties.get("type") != "separator":
                yield (int(number), str(properties["label"]).replace("_", ""),
                       bool(properties.get("enabled", True)),
                       int(properties.get("toggle-state", 0)) == 1)

    def answer(self, command):
        verb, _, argument = command.partition(" ")
        if verb == "tip":
            return str(self.item_property("ToolTip")[2])
        if verb == "menu":
            return "\t".join(f"{title}|{int(enabled)}|{int(checked)}"
                             for _, title, enabled, checked in self.entries())
        if verb == "click":
            number = next(n for n, title, _, _ in self.entries() if title == argument)
            self.menu().Event(dbus.Int32(number), "clicked", dbus.Int32(0, variant_level=1),
                              dbus.UInt32(0))
            return "clicked"
        if verb == "activate":
            self.item().Activate(dbus.Int32(0), dbus.Int32(0))
            return "activated"
        if verb == "context":
            self.item().ContextMenu(dbus.Int32(0), dbus.Int32(0))
            return "opened"
        return f"unknown: {command}"

    def wait_for_item(self):
        if self.watcher.item:
            print("there", flush=True)
            return False
        return True

    def read_command(self, *_):
        command = sys.stdin.readline().strip()
        if not command:
            self.loop.quit()
            return False
        if command == "item":
            GLib.timeout_add(2, self.wait_for_item)
            return True
        try:
            print(self.answer(command), flush=True)
        except (dbus.DBusException, StopIteration) as error:
            print(f"error: {error!r}".replace("\n", " "), flush=True)
        return True

    def run(self):
        self.loop = GLib.MainLoop()
        GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, self.read_command)
        print("ready", flush=True)
        self.loop.run()


Host().run()
