# SPDX-License-Identifier: GPL-3.0-or-later
"""Windows of running text as a recognizer would give them: lower-case words, some of them wrong, with
a word of its own where the speaker pauses."""
import numpy

from model import PAUSES, PIECES

IGNORED = -100
BEGIN, END = 1, 2  # pieces of the vocabulary
SHORT, LONG = 8, 16  # added to the case of a word that is followed by a pause
PAUSED = SHORT | LONG

# The share of words with no mark, a comma, a full stop, a question mark that are followed by a short
# and by a long pause: measured on recordings (README.md).
SHORT_PAUSES = (0.025, 0.36, 0.09, 0.09)
LONG_PAUSES = (0.014, 0.265, 0.66, 0.66)
# Speakers differ: so far (standard deviation) the logarithm of the odds of a pause varies, for all
# words and for those without a mark, from one stretch of so many words to the next.
VARIES, VARIES_INSIDE, STRETCH = 0.7, 0.5, 400

TOGETHER = 6  # batches drawn at once

OTHER, LEFT_OUT, PUT_IN = 0.6, 0.2, 0.2


class Windows:
    """Reads what prepare.py wrote. `part` is "train" or "heldout"; `errors` the share of wrong
    words; `told` the share of windows that contain the pauses."""

    def __init__(self, folder, part, random, errors, told=0.0):
        load = numpy.load(f"{folder}/{part}.npz")
        self.words, self.cases, self.marks = load["words"], load["cases"], load["marks"]
        self.ends, self.names = load["ends"], load["names"]
        table = numpy.load(f"{folder}/table.npy")
        self.pause = len(table)  # the words that stand for a short and a long pause
        self.table = numpy.vstack([table, numpy.zeros_like(table[:PAUSES])])
        self.table[self.pause:, 0] = numpy.arange(PIECES, PIECES + PAUSES)
        self.random, self.errors, self.told = random, errors, told
        pauses = self.drawnPauses()
        self.longPauses = numpy.flatnonzero(pauses == LONG)
        self.cases = self.cases + pauses
        self.begins = numpy.flatnonzero(self.marks >= 2) + 1

    def drawnPauses(self):
        random, stretches = self.random, len(self.words) // STRETCH + 1
        habit = random.normal(0, VARIES, stretches).repeat(STRETCH)[:len(self.words)]
        inside = random.normal(0, VARIES_INSIDE, stretches).repeat(STRETCH)[:len(self.words)]
        habit += inside * (self.marks == 0)
        odds = numpy.exp(habit)

        def share(of):
            of = numpy.array(of)[self.marks]
            return of * odds / (1 - of + of * odds)

        draw, long = random.random(len(self.words)), share(LONG_PAUSES)
        short = (1 - long) * share(numpy.array(SHORT_PAUSES) / (1 - numpy.array(LONG_PAUSES)))
        return numpy.where(draw < long, LONG, numpy.where(draw < long + short, SHORT, 0)) \
            .astype(numpy.uint8)

    def damaged(self, words, cases, marks):
        """Words left out, put in and mistaken; a lost word's mark goes to the word before."""
        n, random, rate = len(words), self.random, self.errors
        draw = random.random(n)
        wrong = draw < rate * OTHER
        words = numpy.where(wrong, self.words[random.integers(0, len(self.words), n)], words)
        lost = (draw > 1 - rate * LEFT_OUT) & (numpy.arange(n) > 0)
        added = (draw > 1 - rate * (LEFT_OUT + PUT_IN)) & ~lost & (numpy.arange(n) < n - 1)
        for i in numpy.flatnonzero(lost):
            marks[i - 1] = max(marks[i - 1], marks[i])
            cases[i - 1] = cases[i - 1] % SHORT + max(cases[i - 1] & PAUSED, cases[i] & PAUSED)
        repeat = numpy.where(lost, 0, numpy.where(added, 2, 1))
        words, cases, marks = (numpy.repeat(x, repeat) for x in (words, cases, marks))
        second = numpy.flatnonzero(numpy.repeat(added, repeat))[1::2]
        words[second] = self.words[random.integers(0, len(self.words), len(second))]
        # The mark and the pause follow the word that was put in.
        cases[second] &= PAUSED
        cases[second - 1] %= SHORT
        marks[second - 1] = 0
        return words, cases, marks

    def batches(self, size):
        """Endless batches of windows. Windows of one batch are about equally long, which saves
        padding."""
        while True:
            longest = int(self.random.choice([12, 24, 40, 56]))
            rows = self.rows(size * TOGETHER, longest)
            rows.sort(key=lambda row: (self.table[row[0]] > 0).sum())
            for i in self.random.permutation(TOGETHER):
                yield self.arrays(rows[i * size:(i + 1) * size])

    def rows(self, count, longest):
        """Half of the windows begin with a sentence, half anywhere; most end at a pause."""
        random, rows = self.random, []
        for _ in range(count):
            length = int(random.integers(longest * 2 // 3, longest + 1))
            if random.random() < 0.5:
                begin, atStart = int(random.choice(self.begins)), True
                end = begin + length
            else:
                end = int(random.choice(self.longPauses)) + 1 if random.random() < 0.6 else \
                    int(random.integers(length, len(self.words)))
                begin, atStart = end - length, False
            if random.random() < 0.5:
                at = numpy.searchsorted(self.longPauses, end)
                if at and self.longPauses[at - 1] + 1 > begin + length // 2:
                    end = int(self.longPauses[at - 1]) + 1
            begin, end = max(0, begin), min(len(self.words), end)
            words, cases, marks = (x[begin:end].copy() for x in (self.words, self.cases, self.marks))
            if random.random() < 0.75:
                words, cases, marks = self.damaged(words, cases, marks)
            told = random.random() < self.told
            words, cases, marks = self.withPauses(words, cases, marks, told)
            if len(cases) and not atStart and cases[0] == 0:
                cases[0] = IGNORED
            rows.append((words, cases, marks))
        return rows

    def withPauses(self, words, cases, marks, told=True):
        """With the words that stand for pauses put in, if they are `told`."""
        pauses = cases & PAUSED
        cases, marks = (cases % SHORT).astype(numpy.int64), marks.astype(numpy.int64)
        if told:
            at = numpy.flatnonzero(pauses)
            words = numpy.insert(words, at + 1, self.pause + (pauses[at] == LONG))
            cases, marks = (numpy.insert(x, at + 1, IGNORED) for x in (cases, marks))
        return words, cases, marks

    def arrays(self, rows):
        """Pieces padded to the longest row, the places of the words' first pieces in them, cases,
        marks."""
        pieces = [self.table[words] for words, _, _ in rows]
        used = [p > 0 for p in pieces]
        for u in used:
            u[:, 0] = True
        width = max(u.sum() for u in used) + 2
        tokens = numpy.zeros((len(rows), width), numpy.int64)
        where = []
        for row, (p, u) in enumerate(zip(pieces, used)):
            flat = p[u]
            tokens[row, 0] = BEGIN
            tokens[row, 1:len(flat) + 1] = flat
            tokens[row, len(flat) + 1] = END
            counts = u.sum(1)
            where.append(row * width + numpy.cumsum(counts) - counts + 1)
        return (tokens, numpy.concatenate(where),
                numpy.concatenate([cases for _, cases, _ in rows]).astype(numpy.int64),
                numpy.concatenate([marks for _, _, marks in rows]).astype(numpy.int64))
