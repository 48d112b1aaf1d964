"""A model download whose connection is lost."""

import http.server
import threading
import unittest

import tiny_model
from fault_case import PATIENCE, FaultCase

LOCALE = "ru_RU"  # without an installed model
PIECE = 300_000  # bytes


class Server(http.server.ThreadingHTTPServer):
    """A mirror on the loopback interface that interrupts every response after a part, and records the
    requested ranges."""

    def __init__(self, port=0):
        super().__init__(("127.0.0.1", port), Handler)
        self.asked_from = []
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def address(self):
        return f"http://127.0.0.1:{self.server_port}"

    def end(self):
        self.shutdown()
        self.server_close()


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        start = int(self.headers.get("Range", "bytes=0-")[6:-1])
        download = self.download()
        self.server.asked_from.append(start)
        self.send_response(206 if start else 200)
        self.send_header("Content-Length", str(download["bytes"] - start))
        if start:
            self.send_header("Content-Range",
                             f"bytes {start}-{download['bytes'] - 1}/{download['bytes']}")
        self.end_headers()
        self.wfile.write(bytes(PIECE))
        self.close_connection = True

    def download(self):
        name = self.path.rpartition("/")[2]
        return next(d for d in tiny_model.model_of(LOCALE)["downloads"]
                    if d["address"].endswith(name))

    def log_message(self, *_):
        pass


class Download(FaultCase):
    def serve(self, port=0):
        server = Server(port)
        self.addCleanup(server.end)
        return server

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
