"""The real program captions and translates speech for a long time and saves every line.

VELUN_ENDURANCE_MINUTES: duration (default 10, minimum 3). VELUN_ENDURANCE_RESULTS: file for samples.
VELUN_ENDURANCE_INPUTS=both: a microphone is captioned, too, into which somebody speaks at the same
time.
"""

import csv
import itertools
import json
import os
import statistics
import time
import unittest
from collections import Counter
from dataclasses import asdict

from accessibility import Accessibility
from captions import Captions
from private_desktop import PrivateDesktop, polling
from speech import clips
from process_usage import usage_of
from velun_program import APPLICATION, VelunProgram

EXECUTABLE = os.environ["VELUN_PROGRAM"]
MINUTES = float(os.environ.get("VELUN_ENDURANCE_MINUTES", "10"))
RESULTS = os.environ.get("VELUN_ENDURANCE_RESULTS")
HAS_MICROPHONE = os.environ.get("VELUN_ENDURANCE_INPUTS") == "both"
NAMES = {"computer": "Computer", "microphone": "Me"}

SAMPLE_EVERY = 10.0  # seconds
# Not compared, because caches are being filled.
WARM_UP = 0.2  # of the duration
# The first and the last part are compared.
COMPARED = 0.25  # of the duration after the warm-up
PAUSE_BETWEEN_CLIPS = 0.6  # seconds
PAUSE_BETWEEN_ROUNDS = 8.0  # seconds
LANGUAGE = "es"

# Growth from the start to the end that is allowed: with the transcript, and apart from it.
KIB_A_LINE = 16
MEMORY = 8 * 1024  # KiB
DESCRIPTORS = 4
THREADS = 2
PROCESSOR = 1.5  # times
DELAY = 1.5  # times, and
DELAY_SECONDS = 0.5  # more: the machine may have other work


def label(line):
    return f"{NAMES[line['input']]}: " if HAS_MICROPHONE else ""


class Endurance(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(PrivateDesktop())
        self.spoken = clips(self.desktop.root / "speech")
        self.desktop.start_sound()
        if HAS_MICROPHONE:
            self.desktop.add_microphone()
        self.desktop.start_compositor()
        self.desktop.start_tray()
        accessibility = self.enterContext(Accessibility(self.desktop))
        self.program = VelunProgram(self.desktop, EXECUTABLE)
        self.program.write_preferences(autoSaveSessions=True, askBeforeDiscarding=False,
                                       translate=True, targetID=LANGUAGE,
                                       captionsBoth=HAS_MICROPHONE)
        self.captions = Captions(self.program.sessions, say=lambda *_, **__: None)
        self.samples = []
        self.program.launch()
        self.application = accessibility.application(APPLICATION)

    def test_hours_of_speech(self):
        self.program.action("toggle-captions")
        self.program.wait_until_capturing()
        self.began = time.monotonic()
        self.play_until(self.began + MINUTES * 60)
        self.assertGreater(len(self.captions.lines), MINUTES * 2, "Captions are missing")
        self.report()
        self.check_file()
        self.check_inputs()
        self.check_usage()
        self.check_delays()

    def play_until(self, end):
        replies = itertools.cycle(reversed(self.spoken))
        for clip in itertools.cycle(self.spoken):
            players = [self.desktop.play(clip.path)]
            self.captions.playing(clip, time.monotonic())
            if HAS_MICROPHONE:
                players.append(self.say(next(replies)))
            while any(player.poll() is None for player in players):
                self.follow(0.02)
            self.follow(PAUSE_BETWEEN_ROUNDS if clip is self.spoken[-1] else PAUSE_BETWEEN_CLIPS)
            if time.monotonic() > end:
                return

    def say(self, clip):
        player = self.desktop.speak(clip.path)
        self.captions.playing(clip, time.monotonic())
        return player

    def follow(self, seconds):
        for _ in polling(seconds):
            now = time.monotonic() - self.began
            if now >= len(self.samples) * SAMPLE_EVERY:
                self.sample(now)
            before = len(self.captions.lines)
            self.captions.print_new()
            for line in self.captions.lines[before:]:
                line.arrived = now

    def sample(self, now):
        self.assertIsNone(self.program.process.poll(), self.program.log())
        usage = usage_of(self.program.process.pid)
        self.samples.append({"second": round(now), "lines": len(self.captions.lines)}
                            | asdict(usage))

    def at_start_and_end(self, items, moment):
        """The items of the two times that are compared."""
        lasted = MINUTES * 60
        warm = lasted * WARM_UP
        length = (lasted - warm) * COMPARED
        return ([i for i in items if warm <= moment(i) < warm + length],
                [i for i in items if lasted - length <= moment(i)])

    def medians(self, key):
        return [statistics.median(s[key] for s in part)
                for part in self.at_start_and_end(self.samples, lambda s: s["second"])]

    def processor_shares(self):
        return [(part[-1]["processor"] - part[0]["processor"])
                / (part[-1]["second"] - part[0]["second"])
                for part in self.at_start_and_end(self.samples, lambda s: s["second"])]

    def delays(self):
        return [sorted(line.delay for line in part)
                for part in self.at_start_and_end(self.captions.lines, lambda l: l.arrived)]

    def report(self):
        if RESULTS:
            with open(RESULTS, "w", newline="", encoding="utf-8") as file:
                writer = csv.DictWriter(file, self.samples[0])
                writer.writeheader()
                writer.writerows(self.samples)
        print(f"\n{MINUTES:g} minutes, {len(self.captions.lines)} lines; at start and end:")
        for key in ("resident", "proportional", "anonymous", "descriptors", "threads",
                    "processes", "lines"):
            print(f"  {key}: {self.medians(key)}")
        print(f"  processor: {[round(s, 3) for s in self.processor_shares()]} of one")
        for part in self.delays():
            print(f"  delay: median {statistics.median(part):.2f} s, "
                  f"95th percentile {part[len(part) * 95 // 100]:.2f} s, {len(part)} lines")

    def check_usage(self):
        first, last = self.medians("lines")
        allowed = MEMORY + (last - first) * KIB_A_LINE
        for key, growth in (("resident", allowed), ("anonymous", allowed),
                            ("descriptors", DESCRIPTORS), ("threads", THREADS),
                            ("processes", 0)):
            first, last = self.medians(key)
            self.assertLessEqual(last, first + growth, key)
        first, last = self.processor_shares()
        self.assertLessEqual(last, first * PROCESSOR)

    def check_delays(self):
        first, last = map(statistics.median, self.delays())
        self.assertLessEqual(last, first * DELAY + DELAY_SECONDS)

    def check_file(self):
        """What was saved is what was shown, after the stop and after the end of the program."""
        self.program.action("toggle-captions")
        self.program.wait_for_state("running", False)
        self.desktop.wait("the end of the session in its file", lambda: "endedAt" in self.saved())
        self.desktop.wait("every line to be translated and shown as it is saved",
                          lambda: self.shown_lines() == self.saved_lines(), seconds=60)
        saved = self.saved()
        self.assertEqual(self.program.quit(), 0, self.program.log())
        # Quitting is the end of the session once more.
        self.assertEqual(self.saved() | {"endedAt": None}, saved | {"endedAt": None})

    def check_inputs(self):
        """Each input has its lines, in the order in which they were spoken."""
        lines = self.saved()["lines"]
        counts = Counter(line["input"] for line in lines)
        print(f"  lines of each input: {dict(counts)}")
        self.assertEqual(set(counts), set(NAMES) if HAS_MICROPHONE else {"computer"})
        self.assertGreater(min(counts.values()), MINUTES * 2, "Captions of an input are missing")
        starts = [line["start"] for line in lines]
        self.assertEqual(starts, sorted(starts))

    def shown_lines(self):
        return self.application.find("text", "Caption Text").text.splitlines()

    def saved(self):
        (file,) = self.program.session_files()
        return json.loads(file.read_text())

    def saved_lines(self):
        return list(itertools.chain.from_iterable(
            (label(line) + line["text"], line["translations"].get(LANGUAGE))
            for line in self.saved()["lines"]))


if __name__ == "__main__":
    unittest.main()
