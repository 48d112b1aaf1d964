"""A mirror of small models that misbehaves as a test says."""

import collections
import hashlib
import http.server
import json
import threading
from pathlib import Path

FILES = Path(__file__).resolve().parents[2] / "platform" / "speech" / "data"
PARTS = {"encoder": "zipformer2-encoder.int8.onnx", "decoder": "decoder.int8.onnx",
         "joiner": "joiner.int8.onnx", "tokens": "tokens-blank0.txt"}
PHRASE = FILES / "h01.wav"  # "turn off the music now"
MODEL = "toy-en"


def sha256(content):
    return hashlib.sha256(content).hexdigest()


def write_catalogue(path):
    """A catalogue with a small English model."""
    downloads = []
    for name in PARTS.values():
        content = (FILES / name).read_bytes()
        downloads.append({"address": f"https://models.example/{name}", "bytes": len(content),
                          "sha256": sha256(content), "packing": "none",
                          "files": [{"name": name, "bytes": len(content),
                                     "sha256": sha256(content)}]})
    model = {"id": MODEL, "kind": "recognition", "title": "Toy", "languages": ["en"],
             "licence": "MIT", "writes": [], "stepMs": 320, "memoryBytes": 1000000,
             "quality": "good",
             "options": {"locales": ["en_US"], "modelType": "zipformer2", "letters": "fold"} | PARTS,
             "downloads": downloads}
    path.write_text(json.dumps({"models": [model]}))


class Mirror(http.server.ThreadingHTTPServer):
    """Answers the next requests as `plan` says, the later ones correctly. A step of the plan is the
    number of bytes to send and what follows: "stall" or "cut"; or "damage", which sends all of them
    with a wrong one.
    """

    daemon_threads = True

    def __init__(self):
        super().__init__(("127.0.0.1", 0), Handler)
        self.plan = collections.deque()
        self.requests = []  # the name of a file, and the offset from which it was asked for
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
        name = self.path.rpartition("/")[2]
        start = int(self.headers.get("Range", "bytes=0-")[6:-1])
        whole = (FILES / name).read_bytes()
        self.server.requests.append((name, start))
        count, ending = self.server.plan.popleft() if self.server.plan else (None, "all")
        content = bytearray(whole[start:])
        if ending == "damage":
            content[len(content) // 2] ^= 1
        self.send_response(206 if start else 200)
        self.send_header("Content-Length", str(len(content)))
        if start:
            self.send_header("Content-Range", f"bytes {start}-{len(whole) - 1}/{len(whole)}")
        self.end_headers()
        self.wfile.write(content[:count])
        self.wfile.flush()
        if ending == "stall":
            self.server.ended.wait()
        self.close_connection = True

    def log_message(self, *_):
        pass
