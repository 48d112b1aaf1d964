"""The settings portal of a desktop. Prints "ready", then sets a value for each line "GROUP KEY NUMBER"
of its standard input and prints "told".
"""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME = "org.freedesktop.portal.Desktop"
SETTINGS = "org.freedesktop.portal.Settings"


class Portal(dbus.service.Object):
    def __init__(self, bus):
        self.settings = {}
        super().__init__(dbus.service.BusName(NAME, bus), "/org/freedesktop/portal/desktop")

    @dbus.service.method(SETTINGS, in_signature="as", out_signature="a{sa{sv}}")
    def ReadAll(self, groups):
        return dbus.Dictionary({group: dbus.Dictionary(keys, signature="sv")
                                for group, keys in self.settings.items() if group in groups},
                               signature="sa{sv}")

    @dbus.service.signal(SETTINGS, signature="ssv")
    def SettingChanged(self, group, key, value):
        self.settings.setdefault(group, {})[key] = value


def set_value(channel, _):
    line = channel.readline()
    if not line:
        loop.quit()
        return False
    group, key, number = line.split()
    portal.SettingChanged(group, key, dbus.UInt32(number))
    print("told", flush=True)
    return True


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
portal = Portal(dbus.SessionBus())
loop = GLib.MainLoop()
GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, set_value)
print("ready", flush=True)
loop.run()
