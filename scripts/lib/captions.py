"""Follows the session file, which Velun rewrites after every line."""

import json
import time
from dataclasses import dataclass

from private_desktop import polling


@dataclass
class ShownLine:
    text: str
    delay: float  # seconds after the end of the phrase
    kind: str  # of the clip that it belongs to


class Captions:
    def __init__(self, sessions_folder, say=print):
        self.lines = []
        self._say = say
        self._folder = sessions_folder
        self._read_at = None
        self._phrase_ends = []  # (monotonic time, kind of clip)
        self._known = set()
        self._translated = set()

    def playing(self, clip, started):
        self._phrase_ends += [(started + end, clip.kind) for end in clip.phrase_ends]

    def session_file(self):
        files = sorted(self._folder.glob("*.json")) if self._folder.exists() else []
        return files[0] if files else None

    def print_new(self):
        """Prints new lines and translations. Returns whether the file has changed."""
        file = self.session_file()
        if not file or file.stat().st_mtime_ns == self._read_at:
            return False
        self._read_at = file.stat().st_mtime_ns
        lines = json.loads(file.read_text())["lines"]
        now = time.monotonic()
        # With two inputs, a line may come before earlier ones.
        for line in [line for line in lines if line["id"] not in self._known]:
            self._known.add(line["id"])
            ended, kind = max((e for e in self._phrase_ends if e[0] <= now),
                              default=(now, self._phrase_ends[0][1]))
            self.lines.append(ShownLine(line["text"], now - ended, kind))
            self._say(f"  {now - ended:4.1f} s  {line['text']}", flush=True)
        for line in lines:
            for text in line["translations"].values():
                if line["id"] not in self._translated:
                    self._translated.add(line["id"])
                    self._say(f"          → {text}", flush=True)
        return True

    def print_for(self, seconds):
        for _ in polling(seconds):
            self.print_new()
