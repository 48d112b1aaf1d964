"""A double of the command that opens pages and folders with the desktop's programs."""


class Opener:
    """Programs that are started afterwards on the desktop find it first."""

    def __init__(self, desktop):
        folder = desktop.root / "opener"
        folder.mkdir()
        self._opened = desktop.root / "opened"
        self._environment = desktop.root / "opened.environment"
        program = folder / "xdg-open"
        program.write_text(f'#!/bin/sh\nenv >"{self._environment}"\n'
                           f'printf "%s\\n" "$1" >>"{self._opened}"\n')
        program.chmod(0o755)
        desktop.environment["PATH"] = f"{folder}:{desktop.environment['PATH']}"

    @property
    def opened(self):
        """What it was asked to open, one address after the other."""
        return self._opened.read_text().splitlines() if self._opened.exists() else []

    def variables_of_qt(self):
        """Those that it got the last time."""
        lines = self._environment.read_text().splitlines()
        return dict(line.split("=", 1) for line in lines if line.startswith("QT_"))
