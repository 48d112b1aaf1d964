"""Word errors of captions."""

import re

SCENES = (("flite", "Synthetic voices"), ("telephone", "Friends on the telephone"),
          ("librivox", "Human readers"))


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


def scenes(lines, clips):
    """A text with the word errors of each kind of clip."""
    for kind, label in SCENES:
        said = " ".join(clip.text for clip in clips if clip.kind == kind)
        heard = " ".join(line.text for line in lines if line.kind == kind)
        errors, words = word_errors(said, heard)
        if not words:
            continue
        right = max(words - errors, 0)
        yield f"{label}: {right} of {words} words right, {100 * errors / words:.1f} % word errors"
