"""The desktops that are known, in the order of the page."""

from gnome import Gnome
from plasma import PlasmaWayland, PlasmaX11
from wayland import Sway, SwayBar, Weston
from x11 import Lxqt, Mate, Xfce

SESSIONS = {session.NAME: session for session in (
    Gnome, PlasmaWayland, PlasmaX11, Xfce, Mate, Lxqt, Sway, SwayBar, Weston)}
