"""Word errors of captions."""

import re


def normalised(text):
    words = re.sub(r"[^\w\s']", " ", text.lower()).split()
    return ["mister" if word == "mr" else word for word in words]


def word_errors(said, heard):
    """(substitutions + insertions + deletions of the best alignment, words said)."""
    reference, hypothesis = normalised(said), normalised(heard)
    row = list(range(len(hypothesis) + 1))
    for i, word in enumerate(reference, 1):
        previous, row[0] = row[0], i
        for j, other in enumerate(hypothesis, 1):
            cost = min(row[j] + 1, row[j - 1] + 1, previous + (word != other))
            previous, row[j] = row[j], cost
    return row[-1], len(reference)
