"""A web server on the loopback interface that misbehaves as a test says."""

import collections
import http.server
import threading


class LocalServer(http.server.ThreadingHTTPServer):
    """Serves the bytes that `content_of` returns for the name of a file. A response is a pair: the
    number of bytes to send, None for all, and what follows: "end"; "cut", which closes the connection
    too early; "stall"; or "damage", with a wrong byte. The next requests get the responses in `plan`,
    the later ones `usual`.
    """

    daemon_threads = True

    def __init__(self, content_of, usual=(None, "end"), port=0):
        super().__init__(("127.0.0.1", port), Handler)
        self.content_of = content_of
        self.plan = collections.deque()
        self.usual = usual
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
        whole = memoryview(self.server.content_of(name))
        self.server.requests.append((name, start))
        count, ending = self.server.plan.popleft() if self.server.plan else self.server.usual
        content = whole[start:]
        if ending == "damage":
            content = bytearray(content)
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
