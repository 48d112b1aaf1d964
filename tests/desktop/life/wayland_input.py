"""A pointer and a keyboard for a headless compositor, through its remote control interface."""

import dbus

SERVICE = "org.gnome.Mutter.RemoteDesktop"
LEFT = 0x110  # as in the kernel's list of buttons
FAR = 10000.0  # pixels, more than any screen has


class WaylandInput:
    def __init__(self, desktop):
        # The session ends with the connection on which it was created.
        self._bus = dbus.bus.BusConnection(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
        desktop.wait("remote control", lambda: self._bus.name_has_owner(SERVICE))
        path = self._bus.call_blocking(SERVICE, "/org/gnome/Mutter/RemoteDesktop", SERVICE,
                                       "CreateSession", "", [])
        self._path = str(path)
        self._call("Start", "")

    def close(self):
        self._bus.close()

    def move_to(self, x, y):
        self.move_by(-FAR, -FAR)
        self.move_by(x, y)

    def move_by(self, x, y):
        self._call("NotifyPointerMotionRelative", "dd", float(x), float(y))

    def press(self):
        self._call("NotifyPointerButton", "ib", LEFT, True)

    def release(self):
        self._call("NotifyPointerButton", "ib", LEFT, False)

    def click(self):
        self.press()
        self.release()

    def key(self, keysym):
        for is_pressed in (True, False):
            self._call("NotifyKeyboardKeysym", "ub", keysym, is_pressed)

    def _call(self, method, signature, *arguments):
        self._bus.call_blocking(SERVICE, self._path, SERVICE + ".Session", method, signature,
                                arguments)
