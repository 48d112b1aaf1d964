"""A window of one colour that stands in the way: obstacle.py COLOUR [--full-screen]. Prints "shown"
once it is on the screen.
"""

import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402

SIZE = (1160, 700)  # of an ordinary window, in points


def main():
    colour, *options = sys.argv[1:]
    window = Gtk.Window(title="Obstacle")
    window.set_default_size(*SIZE)
    style = Gtk.CssProvider()
    style.load_from_data(f"window {{ background: {colour}; }}".encode())
    Gtk.StyleContext.add_provider_for_screen(Gdk.Screen.get_default(), style,
                                             Gtk.STYLE_PROVIDER_PRIORITY_USER)
    window.connect("map-event", lambda *_: print("shown", flush=True))
    window.connect("destroy", Gtk.main_quit)
    if "--full-screen" in options:
        window.fullscreen()
    window.show_all()
    window.present()
    Gtk.main()


main()
