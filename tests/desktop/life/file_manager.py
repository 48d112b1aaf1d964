"""A file manager on the session bus that prints the addresses that it is asked to show."""

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME = "org.freedesktop.FileManager1"


class FileManager(dbus.service.Object):
    @dbus.service.method(NAME, in_signature="ass")
    def ShowItems(self, addresses, startup):
        print(*addresses, flush=True)


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
manager = FileManager(dbus.service.BusName(NAME, dbus.SessionBus()), "/" + NAME.replace(".", "/"))
print("ready", flush=True)
GLib.MainLoop().run()
