#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Cleans speech-like English out of clones of public repositories (README.md names them): one
paragraph a line, an empty line after each document; one document in 20 is held out.
usage: collect.py CLONES OUT, where CLONES contains a folder "owner+name" for each repository"""
import html
import json
import lzma
import os
import random
import re
import subprocess
import sys
import zlib

HELD_OUT = 20  # one document in so many
ALL = 1 << 40
# Bytes that are read of the large repositories, in random order.
PODCASTS, TALKS, DIALOGUES = 24e6, 12e6, 1.2e8
LONG_PARAGRAPH, LONG_TURN = 1500, 150  # characters, words

PRESIDENTS = ("fdroosevelt truman eisenhower kennedy lbjohnson nixon ford carter reagan bush clinton "
              "gwbush obama hoover coolidge").split()
NOISES = r"\((?:[^()]{0,40}(?:laugh|applause|unintell|inaudible|crosstalk)[^()]{0,40})\)"
SIGNS = str.maketrans({"“": '"', "”": '"', "„": '"', "«": '"', "»": '"', "‘": "'", "’": "'",
                       "`": "'", "´": "'", "‐": "-", "‑": "-", "\u00a0": " ", "\u200a": " ",
                       "\u2060": "", "\\": "", "…": "..."})


def git_folder(repository):
    folder = os.path.join(sys.argv[1], repository)
    inside = os.path.join(folder, ".git")
    return inside if os.path.isdir(inside) else folder


def files(repository, pattern, limit=ALL):
    """The texts of the files whose path matches, in random order, up to `limit` bytes."""
    git = ["git", "--git-dir=" + git_folder(repository)]
    listed = subprocess.run([*git, "ls-tree", "-r", "--name-only", "-z", "HEAD"],
                            capture_output=True, check=True).stdout
    names = [name for name in listed.decode().split("\0") if re.search(pattern, name)]
    random.Random(1).shuffle(names)
    done = 0
    with subprocess.Popen([*git, "cat-file", "--batch"], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE) as cat:
        for name in names:
            if done > limit:
                break
            cat.stdin.write(f"HEAD:{name}\n".encode())
            cat.stdin.flush()
            head = cat.stdout.readline().split()
            if head[-1] == b"missing":
                continue
            data = cat.stdout.read(int(head[2]) + 1)[:-1]
            done += len(data)
            yield name, data.decode("utf8", "replace")
        cat.stdin.close()


def clean(text):
    text = html.unescape(text)
    text = re.sub(r"<[^<>\n]{1,200}>", " ", text)
    text = re.sub(r"!?\[([^\]]*)\]\([^)]*\)", r"\1", text)  # links
    text = re.sub(r"\\?\[[^\[\]]{0,60}\\?\]", " ", text)  # [01:02], [laughter]
    text = re.sub(NOISES, " ", text, flags=re.I).translate(SIGNS)
    text = re.sub(r"\s*(?:—|–|--+)\s*", " - ", text)
    text = re.sub(r"[*_~#]+", "", text)
    return re.sub(r"\s+", " ", text).strip(" -")


def is_good(text):
    """Whether it is English with usual punctuation."""
    words = text.split()
    if len(words) < 3 or len(text) < 12 or not re.search(r"[.?!][\"')]*$", text):
        return False
    letters = sum(c.isalpha() or c in " ,.'?" for c in text)
    if letters < 0.93 * len(text) or not text.isprintable():
        return False
    if sum(ord(c) > 127 for c in text) > 0.02 * len(text):
        return False
    if re.search(r"https?:|www\.|[{}=<>|@]", text):
        return False
    if sum(w.isupper() and len(w) > 1 for w in words) > 0.2 * len(words):
        return False
    return len(words) / max(len(re.findall(r"[.,?!]", text)), 1) < 30


def podcasts():
    # "bigtent" has another owner; "news" is not speech.
    for _, text in files("thechangelog+transcripts",
                         r"^(?!bigtent|news|scripts|\.)[a-z]+/.*\.md$", PODCASTS):
        yield [re.sub(r"^\*\*[^*]{1,60}\*\*:?", "", line) for line in text.split("\n")]


def talks():
    speaker = r"^(?:[A-Z0-9][\w.'-]{0,14}(?: [A-Z0-9][\w.'-]{0,14}){0,2}|[A-Z]{1,3}): ?"
    # Without translations and without those that a program wrote.
    original = r"(?<!\.[a-z][a-z])(?<!\.[a-z][a-z]-[a-z][a-z])\.md$"
    for name, text in files("bitcointranscripts+bitcointranscripts", original, TALKS):
        if "needs-review" in text[:1500] or "README" in name or "STYLE" in name:
            continue
        text = re.sub(r"\A---\n.*?\n---\n", "", text, flags=re.S)
        text = re.sub(r"```.*?```", "", text, flags=re.S)
        yield [re.sub(speaker, "", line) for line in text.split("\n")
               if not line.startswith(("#", "-", "*", ">", "|", " "))]


def calls():
    for _, text in files("revdotcom+speech-datasets",
                         r"^earnings2[12]/transcripts/nlp_references/.*\.nlp$"):
        lines, turn, speaker = [], [], None
        rows = [row.split("|") for row in text.split("\n")]
        # Some files have a column more than the others.
        before = rows[0].index("prepunctuation") if "prepunctuation" in rows[0] else None
        for cells in rows[1:]:
            if len(cells) != len(rows[0]):
                continue
            if cells[1] != speaker or (len(turn) > LONG_TURN and turn[-1][-1] in ".?!"):
                lines.append(" ".join(turn))
                turn, speaker = [], cells[1]
            if not cells[0].startswith("<"):
                turn.append((cells[before] if before else "") + cells[0] + cells[4])
            elif turn:
                turn[-1] += cells[4]
        lines.append(" ".join(turn))
        yield lines


def shorter(line):
    while len(line) > LONG_PARAGRAPH:
        cut = re.compile(r"[.?!] (?=[A-Z])").search(line, 600)
        if not cut:
            break
        yield line[:cut.start() + 1]
        line = line[cut.end():]
    yield line


def speeches():
    folder = r"president-speeches/(" + "|".join(PRESIDENTS) + r")/.*\.txt$"
    for _, text in files("mattdean1+nlp-president-speeches", folder):
        lines = []
        for line in text.split("\n"):
            if not line.startswith("<"):
                line = re.sub(r"^(?:THE PRESIDENT|Q|QUESTION|[A-Z. ]{4,30})[.:] ", "", line)
                lines.extend(shorter(line))
        yield lines


def dialogues():
    for _, text in files("google-research-datasets+dstc8-schema-guided-dialogue",
                         r"^train/dialogues_\d+\.json$", DIALOGUES):
        for dialogue in json.loads(text)[::2]:  # they are much alike
            yield [turn["utterance"] for turn in dialogue["turns"]]


def write(path, documents):
    data = "".join(documents).encode()
    with lzma.open(path, "wb", preset=6) as out:
        out.write(data)
    print(os.path.basename(path), len(documents), "documents", len(data.split()), "words", flush=True)


def main():
    os.makedirs(sys.argv[2], exist_ok=True)
    for source in (podcasts, talks, calls, speeches, dialogues):
        kept, held, seen = [], [], set()
        for number, lines in enumerate(source()):
            paragraphs = []
            for line in map(clean, lines):
                key = zlib.crc32(line.encode())
                if is_good(line) and (key not in seen or len(line) < 30):
                    seen.add(key)
                    paragraphs.append(line)
            if paragraphs:
                (held if number % HELD_OUT == 7 else kept).append("\n".join(paragraphs) + "\n\n")
        path = os.path.join(sys.argv[2], source.__name__)
        write(path + ".txt.xz", kept)
        write(path + ".heldout.txt.xz", held)


main()
