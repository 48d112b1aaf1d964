"""The panel as a layer surface under sway, which stands for the compositors made with wlroots."""

import unittest

from compositors import Sway
from layer_panel_case import LayerPanelCase, LayerPanelTests
from window_titles import PANEL


class SwayPanel(LayerPanelTests, LayerPanelCase):
    COMPOSITOR = Sway

    def is_ordinary(self):
        return PANEL in self.desktop.windows()


if __name__ == "__main__":
    unittest.main()
