"""A model download whose connection is lost."""

import http.server
import json
import threading
import unittest

import tiny_model
from fault_case import PATIENCE, FaultCase

LOCALE = "id_ID"  # without an installed model, and with small files
PIECE = 300_000  # bytes


def download_named(name):
    models = [model for path in tiny_model.CATALOGUE.parent.glob("*.json")
              for model in json.loads(path.read_text())["models"]]
    return next(download for model in models for download in model["downloads"]
                if download["address"].endswith(f"/{name}"))


class Server(http.server.ThreadingHTTPServer):
    """A mirror on the loopback interface that interrupts every response after a part, or stalls after
    it. It records the requested ranges of the speech model, and the names of other files."""

    def __init__(self, port=0, stalls=False):
        super().__init__(("127.0.0.1", port), Handler)
        self.asked_from = []
        self.other_files = []
        self.stalls = stalls
        self.ended = threading.Event()
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def address(self):
        return f"http://127.0.0.1:{self.server_port}"

    def end(self):
        self.ended.set()
        self.shutdown()
        self.server_close()


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        start = int(self.headers.get("Range", "bytes=0-")[6:-1])
        name = self.path.rpartition("/")[2]
        download = download_named(name)
        if download in tiny_model.model_of(LOCALE)["downloads"]:
            self.server.asked_from.append(start)
        else:
            self.server.other_files.append(name)
        self.send_response(206 if start else 200)
        self.send_header("Content-Length", str(download["bytes"] - start))
        if start:
            self.send_header("Content-Range",
                             f"bytes {start}-{download['bytes'] - 1}/{download['bytes']}")
        self.end_headers()
        self.wfile.write(bytes(PIECE))
        if self.server.stalls:
            self.server.ended.wait()
        self.close_connection = True

    def log_message(self, *_):
        pass


class Download(FaultCase):
    def serve(self, port=0, stalls=False):
        server = Server(port, stalls)
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
        self.desktop.wait(f"{count} requests", lambda: len(server.asked_from) >= count, PATIENCE)

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
                          lambda: max(server.asked_from, default=0) > 0, PATIENCE)
        server.end()
        self.wait_for_status("no connection to 127.0.0.1", "try again")
        self.program.wait_for_state("running", False)
        # The next attempt resumes the download.
        asked_before = max(server.asked_from)
        server = self.serve(server.server_port)
        self.toggle_captions()
        self.desktop.wait("the download to resume", lambda: server.asked_from, PATIENCE)
        self.assertGreaterEqual(server.asked_from[0], asked_before)
        self.quit()

    def test_a_stop_ends_a_download(self):
        server = self.launch_with_stalled_download(translate=True, targetID="en")
        self.wait_for_status("Downloading translation model…")
        self.desktop.wait("the translation model", lambda: server.other_files, PATIENCE)
        self.program.wait_for_state("running", True)
        self.press_button("Stop Captions")
        self.program.wait_for_state("running", False)
        self.wait_for_status()
        # The next start resumes the download.
        self.press_button("Start Captions")
        self.wait_for_status("Downloading speech model…")
        self.wait_for_requests(server, 2)
        self.assertGreater(server.asked_from[1], 0)
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
        self.assertGreater(server.asked_from[2], 0)
        self.program.action("show-settings")
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
