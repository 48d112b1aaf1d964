"""The panel as a layer surface under KWin."""

import unittest

from compositors import KWin, WIDTH
from layer_panel_case import FRAME, LayerPanelCase, LayerPanelTests, moved
from window_titles import PANEL


class KWinPanel(LayerPanelTests, LayerPanelCase):
    COMPOSITOR = KWin

    def is_ordinary(self):
        return PANEL in self.desktop.windows()

    def test_it_goes_to_the_remaining_output(self):
        self.start_desktop(outputs=2)
        self.launch_at(moved(FRAME, WIDTH, 0))
        self.desktop.remove_output(2)
        self.wait_for_panel_at((WIDTH - FRAME[2], *FRAME[1:]))
        self.quit()


if __name__ == "__main__":
    unittest.main()
