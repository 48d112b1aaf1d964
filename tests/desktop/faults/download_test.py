"""A model download whose connection is lost."""

import json
import unittest

import tiny_model
from fault_case import PATIENCE, FaultCase
from local_server import LocalServer

LOCALE = "id_ID"  # without an installed model, and with small files
PIECE = 300_000  # bytes


def zeros(name):
    """As many as the file of a model in the catalogue has bytes."""
    models = [model for path in tiny_model.CATALOGUE.parent.glob("*.json")
              for model in json.loads(path.read_text())["models"]]
    return bytes(next(download["bytes"] for model in models for download in model["downloads"]
                      if download["address"].endswith(f"/{name}")))


def is_of_speech_model(name):
    return any(download["address"].endswith(f"/{name}")
               for download in tiny_model.model_of(LOCALE)["downloads"])


def offsets(server):
    """From where the files of the speech model were asked for."""
    return [start for name, start in server.requests if is_of_speech_model(name)]


class Download(FaultCase):
    def serve(self, port=0, stalls=False):
        """Every response is interrupted after a part, or stalls after it."""
        server = LocalServer(zeros, (PIECE, "stall" if stalls else "cut"), port)
        self.addCleanup(server.end)
        return server

    def launch_with_stalled_download(self, **preferences):
        server = self.serve(stalls=True)
        self.desktop.environment["VELUN_MODEL_MIRROR"] = server.address()
        self.program.write_preferences(localeID=LOCALE, statusItemExplained=True, **preferences)
        self.desktop.start_sound()
        self.launch()
        self.toggle_captions()
        self.wait_for_status("Downloading speech model…")
        self.wait_for_requests(server, 1)
        return server

    def wait_for_requests(self, server, count):
        self.desktop.wait(f"{count} requests", lambda: len(offsets(server)) >= count, PATIENCE)

    def press_button(self, name):
        """Presses a button of the panel's header, which the pointer opens."""
        left, top, width, _ = self.application.wait_for("frame").extents
        self.desktop.run("xdotool", "mousemove", left + width // 2, top + 5)
        button = self.application.wait_for("push button", name)
        self.assertTrue(button.is_enabled)
        button.press()

    def test_an_interrupted_download_is_resumed(self):
        server = self.serve()
        self.desktop.environment["VELUN_MODEL_MIRROR"] = server.address()
        self.program.write_preferences(localeID=LOCALE, statusItemExplained=True)
        self.desktop.start_sound()
        self.launch()
        self.toggle_captions()
        self.wait_for_status("Downloading speech model…")
        # The download continues after an interrupted response.
        self.desktop.wait("the download to continue",
                          lambda: max(offsets(server), default=0) > 0, PATIENCE)
        server.end()
        self.wait_for_status("no connection to 127.0.0.1", "try again")
        self.program.wait_for_state("running", False)
        # The next attempt resumes the download.
        asked_before = max(offsets(server))
        server = self.serve(server.server_port)
        self.toggle_captions()
        self.desktop.wait("the download to resume", lambda: offsets(server), PATIENCE)
        self.assertGreaterEqual(offsets(server)[0], asked_before)
        self.quit()

    def test_a_stop_ends_a_download(self):
        server = self.launch_with_stalled_download(translate=True, targetID="en")
        self.wait_for_status("Downloading translation model…")
        self.desktop.wait("the translation model",
                          lambda: len(server.requests) > len(offsets(server)), PATIENCE)
        self.program.wait_for_state("running", True)
        self.press_button("Stop Captions")
        self.program.wait_for_state("running", False)
        self.wait_for_status()
        # The next start resumes the download.
        self.press_button("Start Captions")
        self.wait_for_status("Downloading speech model…")
        self.wait_for_requests(server, 2)
        self.assertGreater(offsets(server)[1], 0)
        self.toggle_captions()
        self.program.wait_for_state("running", False)
        self.wait_for_status()
        self.quit()

    def test_a_change_of_language_does_not_wait_for_a_download(self):
        server = self.launch_with_stalled_download()
        self.program.action("input", "microphone")
        self.wait_for_requests(server, 2)
        self.program.action("input", "computer")
        self.wait_for_requests(server, 3)
        self.assertGreater(offsets(server)[2], 0)
        self.program.action("show-settings")
        self.application.wait_for("list item", "Captions").select()
        self.application.wait_for("combo box", label="Recognition Language").choose(
            "English (United States)")
        self.program.wait_until_capturing()
        self.program.wait_for_state("running", True)
        self.wait_for_status()
        self.quit()

    def test_a_quit_ends_a_download(self):
        server = self.serve()
        self.desktop.environment["VELUN_MODEL_MIRROR"] = server.address()
        self.program.write_preferences(localeID=LOCALE, statusItemExplained=True)
        self.launch()
        self.toggle_captions()
        self.wait_for_status("Downloading speech model…")
        self.quit()


if __name__ == "__main__":
    unittest.main()
