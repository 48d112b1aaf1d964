"""Session files for tests of the library, in the program's format."""

import json
import uuid
from datetime import datetime, timedelta, timezone

UTC = timezone.utc
TIME = "%Y-%m-%dT%H:%M:%SZ"
LEGACY_HEADING = "# 자막 세션 — "


def identifier(*parts):
    return str(uuid.uuid5(uuid.NAMESPACE_OID, repr(parts))).upper()


def session(title, started, lines, minutes=8):
    """`lines` are pairs of a text and its translations by language."""
    return {
        "schemaVersion": 1, "id": identifier(title, started), "title": title,
        "startedAt": started.strftime(TIME),
        "endedAt": (started + timedelta(minutes=minutes)).strftime(TIME),
        "lines": [{"id": identifier(title, started, number), "text": text,
                   "time": (started + timedelta(seconds=5 * number)).strftime(TIME),
                   "sourceLanguage": "en_US", "input": "computer", "translations": translations}
                  for number, (text, translations) in enumerate(lines)]}


def encoded(content):
    """The session as the program writes it."""
    text = json.dumps(content, indent=2, sort_keys=True, ensure_ascii=False,
                      separators=(",", " : "))
    return text.replace('"translations" : {}', '"translations" : {\n\n      }').encode()


def write(folder, content):
    """Writes a session under the name that the program gives it (in UTC); returns the path."""
    folder.mkdir(parents=True, exist_ok=True)
    started = datetime.strptime(content["startedAt"], TIME)
    path = folder / f"{started:%Y-%m-%d_%H-%M-%S}_{content['id']}.json"
    path.write_bytes(encoded(content))
    return path


def write_legacy(folder, started, lines):
    """A transcript of an earlier version; `lines` are triples of time, text and translation."""
    folder.mkdir(parents=True, exist_ok=True)
    path = folder / f"{started:%Y-%m-%d_%H-%M-%S}.md"
    body = "".join(f"`{time}` {text}\n> {translation}\n\n" for time, text, translation in lines)
    path.write_text(f"{LEGACY_HEADING}{started:%Y-%m-%d}\n\n{body}", encoding="utf-8")
    return path


RIVERS = [("Rivers find the sea.", {"ko": "강은 바다를 찾아간다.", "es": "Los ríos hallan el mar."}),
          ("This takes a while.", {})]
CELLS = [("A cell has a wall.", {"ko": "세포에는 벽이 있다."})]
TEAM = [("Let us ship on Friday.", {}), ("Who tests the installer?", {}), ("I will.", {})]


def sample_library(now):
    """Sessions of many ages, newest first."""
    return [session("Evening talk", now, RIVERS),
            session("Biology lecture", now - timedelta(days=1), CELLS),
            session("Team call", now - timedelta(days=6), TEAM),
            session("Budget 2025/26", now - timedelta(days=7), TEAM[:1]),
            session("Old lecture", datetime(2024, 3, 5, 9, 30, tzinfo=UTC), CELLS)]
