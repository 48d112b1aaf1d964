"""A picture of the whole KWin session, over its own interface: shoot_kwin.py FILE."""

import os
import sys
import threading

import dbus
from PIL import Image


def main():
    reader, writer = os.pipe()
    pixels = bytearray()

    def read():
        with os.fdopen(reader, "rb") as stream:
            pixels.extend(stream.read())

    thread = threading.Thread(target=read)
    thread.start()
    screenshot = dbus.SessionBus().get_object("org.kde.KWin", "/org/kde/KWin/ScreenShot2")
    about = screenshot.CaptureWorkspace({"native-resolution": True}, dbus.types.UnixFd(writer),
                                        dbus_interface="org.kde.KWin.ScreenShot2")
    os.close(writer)
    thread.join()
    size = (int(about["width"]), int(about["height"]))
    # The pixels lie in memory as blue, green, red and alpha.
    Image.frombytes("RGB", size, bytes(pixels), "raw", "BGRX", int(about["stride"])).save(sys.argv[1])


main()
