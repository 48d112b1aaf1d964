"""Checking for updates in the real program, built with the address of an update feed. It
runs in a network namespace of its own, in which that address is our server and only our server's
certificate is trusted.
"""

import os
import subprocess
import unittest
from pathlib import Path

from opener import Opener
from private_desktop import end
from program_case import ProgramCase
from window_titles import UPDATES

HERE = Path(__file__).resolve().parent
PORT = os.environ["VELUN_FEED_PORT"]
PAGE = "https://example.org/release"
FEED = """<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><item><link>{page}</link><sparkle:version>{version}</sparkle:version>
<description>{notes}</description></item></channel></rss>"""
OWN_NETWORK = 'ip link set lo up && mount --bind "$1" /etc/ssl/certs && shift && exec "$@"'


@unittest.skipUnless(os.geteuid() == 0, "only the superuser can replace the trusted certificates")
class Updates(ProgramCase):
    def setUp(self):
        super().setUp()
        self.updates = None
        self.files, certificates = self.desktop.root / "files", self.desktop.root / "certificates"
        self.files.mkdir()
        certificates.mkdir()
        certificate, key = certificates / "certificate.pem", self.desktop.root / "key.pem"
        subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2",
                        "-subj", "/CN=localhost", "-addext", "subjectAltName=DNS:localhost",
                        "-keyout", key, "-out", certificate], check=True, capture_output=True)
        self.server = self.desktop.start(
            ["unshare", "--net", "--mount", "sh", "-c", OWN_NETWORK, "sh", certificates,
             "/usr/bin/python3", "-B", HERE / "release_server.py", PORT, self.files, certificate,
             key], log="server", stdout=-1, text=True)
        self.addCleanup(self.server.stdout.close)
        self.assertEqual(self.server.stdout.readline(), "ready\n",
                         self.desktop.log_path("server").read_text())
        self.program.prefix = ["nsenter", "--target", str(self.server.pid), "--net", "--mount"]

    def test_every_outcome(self):
        opener = Opener(self.desktop)
        self.launch()
        self.offer("0.1.0")
        self.check("Velun is up to date", "You have the latest version, 0.1.0.")

        self.offer("0.2.0", "A quieter panel.")
        self.check("A new version of Velun is available",
                   "Version 0.2.0 is available; you have 0.1.0.")
        self.assertEqual(self.updates.find("label", "What’s New").text.strip(), "A quieter panel.")
        self.updates.find("push button", "Open Release Page").press()
        self.wait("the page", lambda: opener.opened == [PAGE])

        (self.files / "releases.xml").write_text("This is no list.")
        self.check("Couldn’t check for updates")
        (self.files / "releases.xml").unlink()
        self.check("Couldn’t check for updates")
        end(self.server)
        self.check("Couldn’t check for updates")
        self.quit()

    def offer(self, version, notes=""):
        (self.files / "releases.xml").write_text(
            FEED.format(page=PAGE, version=version, notes=notes))

    def check(self, *texts):
        if self.updates:
            self.updates.find("push button", "Close").press()
            self.wait("the last one to close", lambda: UPDATES not in self.desktop.windows())
        self.updates = self.open_window("check-for-updates", UPDATES)
        for text in texts:
            self.updates.wait_for("notification", text)
        self.assertEqual(self.updates.find("push button", "Open Release Page").is_showing,
                         "available" in texts[0])


if __name__ == "__main__":
    unittest.main()
