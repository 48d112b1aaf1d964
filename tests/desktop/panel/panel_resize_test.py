"""The pixels of the panel on the screen after a resize."""

import re
import signal
import unittest

from spoken_case import PlainCase
from window_titles import PANEL


class PanelResize(PlainCase):
    def frame(self):
        """Left, top, width and height of the panel on the screen."""
        number = self.desktop.run("xdotool", "search", "--onlyvisible", "--name", PANEL).split()[0]
        text = self.desktop.run("xdotool", "getwindowgeometry", "--shell", number)
        return tuple(int(re.search(rf"^{key}=(\d+)", text, re.M)[1])
                     for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def move_pointer(self, x, y):
        self.desktop.run("xdotool", "mousemove", x, y)

    def picture(self):
        """A digest of the panel's pixels on the screen."""
        left, top, width, height = self.frame()
        return self.desktop.run("import", "-window", "root", "-crop",
                                f"{width}x{height}+{left}+{top}", "-format", "%#", "info:-")

    def still_picture(self):
        """Waits until several digests in a row are the same, because buttons fade in."""
        pictures = []

        def still():
            pictures.append(self.picture())
            return len(pictures) >= 5 and len(set(pictures[-5:])) == 1

        self.desktop.wait("the panel to be still", still)
        return pictures[-1]

    def put_pointer_into(self, frame):
        """Beside the buttons, whose tool tips would be in the pictures."""
        left, top, width, height = frame
        self.move_pointer(left + width // 8, top + height // 2)

    def test_a_slow_window_manager_leaves_no_old_picture(self):
        self.move_pointer(5, 5)
        self.program.write_preferences(statusItemExplained=True)
        self.program.launch()
        self.desktop.wait_for_window(PANEL)
        small = self.frame()
        without_header = self.still_picture()
        self.put_pointer_into(small)
        self.desktop.wait("the header", lambda: self.frame()[3] > small[3])
        with_header = self.still_picture()
        self.assertNotEqual(with_header, without_header)
        self.move_pointer(5, 5)
        self.desktop.wait("the panel as it was", lambda: self.frame() == small
                          and self.picture() == without_header)
        # The program draws its new size while the window still has the old one.
        self.desktop.window_manager.send_signal(signal.SIGSTOP)
        self.put_pointer_into(small)
        self.desktop.wait("the header to be drawn", lambda: self.picture() != without_header)
        self.still_picture()
        self.desktop.window_manager.send_signal(signal.SIGCONT)
        self.desktop.wait("the header", lambda: self.frame()[3] > small[3])
        self.desktop.wait("the panel as it is drawn without delay",
                          lambda: self.picture() == with_header)
        self.quit()


if __name__ == "__main__":
    unittest.main()
