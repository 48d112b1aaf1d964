#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures the model on held-out documents as a recognizer would give them: 5 % of the words wrong,
pauses as measured. Phrases end at long pauses."""
import argparse
import os

os.environ.setdefault("OPENBLAS_NUM_THREADS", "1")

import numpy
import torch

from model import Model
from windows import IGNORED, LONG, PAUSED, Windows

LEFT = 24  # words before those that are decided


def rounded(state):
    """The weights as int8 gives them back, one scale for each row."""
    for name, value in state.items():
        if value.dim() > 1:
            scale = value.flatten(1).abs().max(1).values.clamp(min=1e-8) / 127
            scale = scale.reshape(-1, *[1] * (value.dim() - 1))
            state[name] = (value / scale).round() * scale
    return state


def predicted(model, data, words, spans, right):
    """Cases and marks of words[begin:end], seen with LEFT words before and `right` after."""
    order = sorted(range(len(spans)), key=lambda i: spans[i][1] - spans[i][0])
    cases, marks = [None] * len(spans), [None] * len(spans)
    for at in range(0, len(order), 200):
        rows, cuts = [], []
        for i in order[at:at + 200]:
            begin, end, low, high = spans[i]
            low, high = max(low, begin - LEFT), min(high, end + right)
            rows.append((words[low:high],) * 3)
            cuts.append((i, begin - low, end - low))
        tokens, where, _, _ = data.arrays(rows)
        with torch.no_grad():
            case, mark = model(torch.from_numpy(tokens), torch.from_numpy(where))
        case, mark = case.argmax(1).numpy(), mark.argmax(1).numpy()
        start = 0
        for (i, begin, end), row in zip(cuts, rows):
            cases[i], marks[i] = case[start + begin:start + end], mark[start + begin:start + end]
            start += len(row[0])
    return numpy.concatenate(cases), numpy.concatenate(marks)


def f1(truth, guess):
    return 2 * (truth & guess).sum() / max(truth.sum() + guess.sum(), 1)


def agreed(cases, marks, real, begins):
    """A word after a sentence end begins with a capital. Where a phrase `begins`, the word before is
    not known here."""
    cases = cases.copy()
    at = numpy.flatnonzero(real)
    after = at[1:][(marks[at[:-1]] >= 2) & ~begins[at[1:]]]
    cases[after] = numpy.where(cases[after] == 0, 2, cases[after])
    return cases


def report(name, cases, marks, trueCases, trueMarks):
    real = trueMarks != IGNORED
    cases, marks, trueCases, trueMarks = (x[real] for x in (cases, marks, trueCases, trueMarks))
    print(f"{name:28s} {len(marks):7d} words  end {f1(trueMarks >= 2, marks >= 2):.3f}  "
          f"stop {f1(trueMarks == 2, marks == 2):.3f}  question {f1(trueMarks == 3, marks == 3):.3f}"
          f"  comma {f1(trueMarks == 1, marks == 1):.3f}  Capital {f1(trueCases == 2, cases == 2):.3f}"
          f"  UPPER {f1(trueCases == 1, cases == 1):.3f}  case right {(cases == trueCases).mean():.3f}",
          flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("data", help="the folder that prepare.py wrote")
    parser.add_argument("checkpoint")
    parser.add_argument("--phrases", type=int, default=4000)
    parser.add_argument("--no-pauses", action="store_true", help="do not tell the pauses")
    parser.add_argument("--spots", action="store_true", help="also cut at any word")
    arguments = parser.parse_args()
    torch.set_num_threads(1)
    random = numpy.random.default_rng(5)
    data = Windows(arguments.data, "heldout", random, 0.05)
    model = Model()
    state = torch.load(arguments.checkpoint)
    model.load_state_dict(rounded(state["mean"]))
    print("trained with", state["words"], "words")
    model.eval()
    words, cases, marks, sources, begin = [], [], [], [], 0
    told = not arguments.no_pauses
    ends = []
    for number, end in enumerate(data.ends):
        w, c, m = data.damaged(*(x[begin:end].copy() for x in (data.words, data.cases, data.marks)))
        isLong = (c & PAUSED) == LONG
        w, c, m = data.withPauses(w, c, m, told)
        at = numpy.flatnonzero(w == data.pause + 1) if told else numpy.flatnonzero(isLong)
        ends.append(sum(map(len, words)) + at + 1)
        words.append(w), cases.append(c), marks.append(m)
        sources.append(numpy.full(len(w), number))
        begin = end
    words, cases, marks, sources, ends = map(numpy.concatenate, (words, cases, marks, sources, ends))
    limits = numpy.searchsorted(sources, numpy.arange(len(data.names) + 1))
    phrases = [(a, b, limits[sources[a]], limits[sources[a] + 1])
               for a, b in zip(ends[:-1], ends[1:]) if sources[a] == sources[b - 1]]
    picked = [phrases[i] for i in numpy.sort(random.permutation(len(phrases))[:arguments.phrases])]
    where = numpy.concatenate([numpy.arange(a, b) for a, b, _, _ in picked])
    lasts = numpy.cumsum([b - a for a, b, _, _ in picked]) - 1 - told
    begins = numpy.zeros(len(where), bool)
    begins[numpy.cumsum([0] + [b - a for a, b, _, _ in picked])[:-1]] = True
    for right in (0, 2, 4):
        c, m = predicted(model, data, words, picked, right)
        c = agreed(c, m, marks[where] != IGNORED, begins)
        report(f"phrases, {right} words after", c, m, cases[where], marks[where])
        report("   its last word", c[lasts], m[lasts], cases[where][lasts], marks[where][lasts])
    for number, name in enumerate(data.names):
        of = sources[where] == number
        report(f"   {name}", c[of], m[of], cases[where][of], marks[where][of])
    if not arguments.spots:
        return
    spots = random.integers(0, len(words) - 1, arguments.phrases * 2)
    spots = [(int(a), int(a) + 1, limits[sources[a]], limits[sources[a] + 1]) for a in spots]
    where = numpy.array([a for a, _, _, _ in spots])
    for right in (0, 1, 2, 4):
        c, m = predicted(model, data, words, spots, right)
        report(f"each word, {right} words after", c, m, cases[where], marks[where])


if __name__ == "__main__":
    main()
