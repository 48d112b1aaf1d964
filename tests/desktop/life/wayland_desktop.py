"""A private Wayland desktop: a headless compositor with XWayland."""

import re

from private_desktop import PrivateDesktop

SOCKET = "velun-wayland"
MUTTER = ["mutter", "--headless", "--wayland", "--virtual-monitor", "1280x800",
          "--wayland-display", SOCKET]


class WaylandDesktop(PrivateDesktop):
    def _start_display(self):
        self.environment["LIBGL_ALWAYS_SOFTWARE"] = "1"
        self.start(MUTTER, log="compositor")
        said = self.wait("the compositor", lambda: re.search(
            r"Using public X11 display (:\d+)", self.log_path("compositor").read_text()))
        cookies = self.wait("the X server's key", lambda: next(
            (self.root / "run").glob(".mutter-Xwaylandauth.*"), None))
        self.environment |= {"DISPLAY": said[1], "XAUTHORITY": str(cookies),
                             "WAYLAND_DISPLAY": SOCKET, "XDG_SESSION_TYPE": "wayland"}
        self.wait("the window manager",
                  lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
