"""The first run: the panel offers better captions, and their download meets every mishap."""

import json
import os
import shutil
import unittest
from pathlib import Path

from process_usage import children
from spoken_case import SpokenCase
from tiny_model import MODEL, PHRASE, TINY, mirror, write_catalogue
from velun_program import APPLICATION

OFFER = "Better captions: download 1 MB"
ENCODER = TINY["encoder"]


class FirstRun(SpokenCase):
    def setUp(self):
        super().setUp()
        self.mirror = mirror()
        self.addCleanup(self.mirror.end)
        catalogue = self.desktop.root / "catalogue.json"
        write_catalogue(catalogue)
        self.desktop.environment |= {"VELUN_MODEL_MIRROR": self.mirror.address(),
                                     "VELUN_MODEL_CATALOGUE": str(catalogue)}
        self.models = self.desktop.home / "data" / "app.velun.Velun" / "models"
        shutil.rmtree(self.models, ignore_errors=True)
        self.clicks = 0

    def show_panel(self, **preferences):
        self.launch(statusItemExplained=True, autoSaveSessions=True, **preferences)
        self.find_panel()

    def show_panel_again(self):
        """In the next run, with the preferences of the last."""
        self.program.launch()
        self.application = self.accessibility.application(APPLICATION)
        self.find_panel()

    def find_panel(self):
        self.program.action("show-panel")
        self.panel = self.application.wait_for("frame")

    def press(self, name):
        self.panel.wait_for("push button", name).press()
        self.clicks += 1

    def offered(self):
        """The visible buttons below the text of the offer."""
        names = (OFFER, "Not Now", "Pause", "Continue", "Cancel", "Try Again")
        return [node.name for node in self.panel.find_all("push button")
                if node.name in names and node.is_showing]

    def wait_for_text(self, *parts):
        def shown():
            return any(all(part in node.name for part in parts) and node.is_showing
                       for node in self.panel.find_all("notification"))
        self.desktop.wait(f"the text {parts}", shown)

    def wait_for_requests(self, count):
        self.desktop.wait(f"{count} requests", lambda: len(self.mirror.requests) >= count)

    def partial(self):
        return self.models / ".downloads" / MODEL / f"{ENCODER}.part"

    def wait_for_partial(self, count):
        self.desktop.wait(f"{count} bytes", lambda: self.partial().exists()
                          and self.partial().stat().st_size == count)

    def caption(self):
        """Plays the phrase and waits for its saved lines, which are returned as one text."""
        self.desktop.play(PHRASE)
        def lines():
            return [line["text"] for session in self.saved_sessions() for line in session["lines"]]
        self.desktop.wait("a line", lines, seconds=60)
        return " ".join(lines())

    def test_nothing_is_fetched_unasked(self):
        self.show_panel()
        self.panel.wait_for("push button", OFFER)
        self.start_captions()
        self.caption()
        self.assertFalse(self.mirror.requests)
        self.quit_program()

    def test_two_clicks_lead_to_better_captions(self):
        self.show_panel()
        self.press(OFFER)
        self.wait_for_text("Better captions are ready.")
        self.press("Start")
        self.program.wait_until_capturing()
        self.assertIn("Music", self.caption().title())
        # The model is in use.
        self.assertTrue(self.is_model_loaded())
        self.assertLessEqual(self.clicks, 2)
        self.note_figure()
        self.quit_program()

    def test_every_mishap_of_the_download_is_told_and_overcome(self):
        self.mirror.plan.append((150_000, "stall"))
        self.show_panel()
        self.press(OFFER)
        self.wait_for_partial(150_000)
        self.wait_for_text("of 1 MB")
        self.assertEqual(self.offered(), ["Pause", "Cancel"])
        # Captions start meanwhile, with the recognizer that is there.
        self.press("Start")
        self.program.wait_until_capturing()
        self.press("Pause")
        self.wait_for_text("Paused")

        # The connection breaks after some more bytes; the download goes on where it was.
        self.mirror.plan += [(50_000, "cut"), (10_000, "stall")]
        self.press("Continue")
        self.desktop.wait("the download to go on after the break",
                          lambda: (ENCODER, 200_000) in self.mirror.requests)
        self.assertIn((ENCODER, 150_000), self.mirror.requests)
        self.wait_for_partial(210_000)
        self.press("Pause")
        self.wait_for_text("Paused")

        # The file is not what the catalogue says, twice: the part is not used for a third attempt.
        self.mirror.plan += [(None, "damage"), (None, "damage")]
        self.press("Continue")
        self.wait_for_text("The downloaded model was damaged and has been deleted. Try again.")
        self.assertEqual(self.offered(), ["Try Again", "Not Now"])

        # The disk is full.
        self.partial().symlink_to("/dev/full")
        self.press("Try Again")
        self.wait_for_text("the disk is full", "Free some space, then try again.")
        self.partial().unlink()

        # Cancelled.
        self.mirror.plan.append((100_000, "stall"))
        self.press("Try Again")
        self.wait_for_partial(100_000)
        self.press("Cancel")
        self.desktop.wait("the part to go", lambda: not self.partial().exists())
        self.panel.wait_for("push button", OFFER)

        self.press(OFFER)
        self.wait_for_text("Better captions are ready.")
        # It takes over in the running captions.
        self.desktop.wait("the model to take over",
                          lambda: self.status() == "Captions now use “Tiny English”.")
        self.assertIn("Music", self.caption().title())
        self.quit_program()

    def test_a_paused_download_continues_in_the_next_run(self):
        self.mirror.plan.append((150_000, "stall"))
        self.show_panel()
        self.press(OFFER)
        self.wait_for_partial(150_000)
        self.quit_program()
        self.show_panel_again()
        self.wait_for_text("Paused")
        self.assertEqual(self.mirror.requests, [(ENCODER, 0)])
        self.press("Continue")
        self.wait_for_text("Better captions are ready.")
        self.assertEqual(self.mirror.requests[1], (ENCODER, 150_000))
        self.quit_program()

    def test_a_declined_download_is_not_offered_again(self):
        self.show_panel()
        self.press("Not Now")
        self.desktop.wait("the offer to go", lambda: OFFER not in self.offered())
        self.quit_program()
        self.show_panel_again()
        self.panel.wait_for("push button", "Start")
        self.assertEqual(self.offered(), [])
        self.quit_program()

    def status(self):
        label = self.panel.find("notification", "Status")
        return label.description if label else ""

    def is_model_loaded(self):
        """Whether the program's recognizer uses the library of downloaded models."""
        helpers = [Path(f"/proc/{child}") for child in children(self.program.process.pid)]
        return any("sherpa-onnx" in (helper / "maps").read_text() for helper in helpers)

    def note_figure(self):
        """Tells the benchmarks, if they run this test."""
        if path := os.environ.get("VELUN_FIGURES"):
            with open(path, "w", encoding="utf-8") as figures:
                json.dump({"first_run_clicks": self.clicks}, figures)

    def quit_program(self):
        self.assertEqual(self.program.quit(), 0, self.program.log())


if __name__ == "__main__":
    unittest.main()
