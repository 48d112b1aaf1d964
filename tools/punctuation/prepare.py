#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes arrays of words, cases and marks, and a vocabulary of pieces (needs python3-sentencepiece).
usage: prepare.py TEXT OUT [PIECES], where TEXT is the folder that collect.py wrote; PIECES is the
pieces.vocab of an earlier model whose training goes on"""
import collections
import glob
import lzma
import os
import shutil
import sys

import numpy
import sentencepiece

from model import PIECES
from spoken_words import labelled

PARTS = ("train", "heldout")
MAX_PIECES = 6  # the rest of a very long word is left out in training
MAX_PIECE = 16  # characters


def read(folder):
    """The arrays of each part and source; the index of each word."""
    index, data = {}, {}
    for part in PARTS:
        for path in sorted(glob.glob(folder + "/*.txt.xz")):
            if path.endswith(".heldout.txt.xz") != (part == "heldout"):
                continue
            rows = []
            with lzma.open(path, "rt", encoding="utf8") as source:
                for line in source:
                    rows.extend((index.setdefault(word, len(index)), case, mark)
                                for word, case, mark in labelled(line))
            name = os.path.basename(path).split(".")[0]
            data[part, name] = numpy.array(rows, numpy.int32)
            print(part, name, len(rows), "words", flush=True)
    return data, list(index)


def join(data, part, out):
    names = [name for p, name in data if p == part]
    joined = numpy.concatenate([data[part, name] for name in names])
    ends = numpy.cumsum([len(data[part, name]) for name in names])
    numpy.savez(f"{out}/{part}.npz", words=joined[:, 0], cases=joined[:, 1].astype(numpy.uint8),
                marks=joined[:, 2].astype(numpy.uint8), ends=ends, names=numpy.array(names))
    return joined[:, 0]


def make_vocabulary(names, counts, out):
    with open(f"{out}/words.tsv", "w", encoding="utf8") as file:
        for i in numpy.argsort(-counts):
            if counts[i] > 1:
                file.write(f"{names[i]}\t{counts[i]}\n")
    # Sherpa-onnx divides a word so that the sum of the scores is best, as a unigram model does.
    sentencepiece.SentencePieceTrainer.train(
        input=f"{out}/words.tsv", input_format="tsv", model_prefix=f"{out}/pieces",
        vocab_size=PIECES, model_type="unigram", character_coverage=1.0,
        normalization_rule_name="identity", num_threads=1, minloglevel=1, add_dummy_prefix=True)


def read_vocabulary(path):
    """Scores of the pieces, by piece, in the order of their ids."""
    with open(path, encoding="utf8") as source:
        rows = (line.rstrip("\n").split("\t") for line in source)
        return {piece: float(score) for piece, score in rows}


def pieces(word, scores, ids):
    """The best division by the sum of scores."""
    text = "▁" + word
    best = [(0.0, None)] + [(-1e30, None)] * len(text)
    for end in range(1, len(text) + 1):
        for start in range(max(0, end - MAX_PIECE), end):
            score = scores.get(text[start:end])
            if score is not None and best[start][0] + score > best[end][0]:
                best[end] = (best[start][0] + score, start)
    found, at = collections.deque(), len(text)
    while at:
        start = best[at][1]
        if start is None:
            return [0]
        found.appendleft(ids[text[start:at]])
        at = start
    return list(found)


def main():
    text, out = sys.argv[1:3]
    os.makedirs(out, exist_ok=True)
    data, names = read(text)
    words = {part: join(data, part, out) for part in PARTS}
    counts = numpy.bincount(words["train"], minlength=len(names))
    vocabulary = f"{out}/pieces.vocab"
    if len(sys.argv) > 3:
        shutil.copy(sys.argv[3], vocabulary)
    else:
        make_vocabulary(names, counts, out)
    scores = read_vocabulary(vocabulary)
    ids = {piece: i for i, piece in enumerate(scores)}
    table = numpy.zeros((len(names), MAX_PIECES), numpy.int16)
    for i, name in enumerate(names):
        row = pieces(name, scores, ids)[:MAX_PIECES]
        table[i, :len(row)] = row
    numpy.save(f"{out}/table.npy", table)
    print(len(names), "different words;", ((table > 0).sum(1) * counts).sum() / counts.sum(),
          "pieces a word in running text")


if __name__ == "__main__":
    main()
