"""A moving picture of the caption panel, taken from the screen while the program captions."""

import subprocess

SECONDS = 15
PICTURES_PER_SECOND = 8
MARGIN = 12  # pixels around the panel
COLOURS = 48  # text, two greys and their blends need no more
PALETTE = (f"split[shown][seen];[seen]palettegen=max_colors={COLOURS}[palette];"
           "[shown][palette]paletteuse=dither=none")


class Film:
    """Starts filming the panel where it is now."""

    def __init__(self, desktop):
        self._desktop = desktop
        self._taken = desktop.root / "film.mkv"
        left, top, width, height = self._panel()
        display = desktop.environment["DISPLAY"]
        self._camera = desktop.start(
            ["ffmpeg", "-f", "x11grab", "-draw_mouse", "0", "-framerate", PICTURES_PER_SECOND,
             "-video_size", f"{width + 2 * MARGIN}x{height + 2 * MARGIN}",
             "-i", f"{display}+{left - MARGIN},{top - MARGIN}", "-t", SECONDS, "-c:v", "ffv1",
             self._taken], log="film")

    def _panel(self):
        window = self._desktop.run("xdotool", "search", "--onlyvisible", "--name",
                                   "^Velun Captions$").split()[-1]
        told = self._desktop.run("xdotool", "getwindowgeometry", "--shell", window)
        values = dict(line.split("=") for line in told.split())
        return [int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT")]

    def write(self, path):
        """Waits for its end and writes it as a GIF."""
        if self._camera.wait(SECONDS + 30) != 0:
            raise RuntimeError(self._desktop.log_path("film").read_text())
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", str(self._taken), "-vf", PALETTE,
                        str(path)], check=True)
