#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures how numbers are written: numbers.py PROGRAM TEXT…

Turns the numbers of texts (collect.py made them) into words, lets PROGRAM (bench/write_english of a
build folder) write them, and counts how many come back as they were, by kind. Also counts the number
words that the text spells and the program writes in digits."""

import argparse
import collections
import difflib
import re
import subprocess

from spoken_words import labelled

MARKS = ("", ",", ".", "?")
NUMBER_WORDS = set("""zero one two three four five six seven eight nine ten eleven twelve thirteen
    fourteen fifteen sixteen seventeen eighteen nineteen twenty thirty forty fifty sixty seventy eighty
    ninety hundred thousand million billion trillion percent dollars euros point half tenth""".split())
YEAR = r"(?:1[1-9]|20)\d\d"
KINDS = (("money", r"[$€£].*"), ("percent", r".*%"), ("time", r"\d+:\d+"),
         ("ordinal", r"[\d,]+(?:st|nd|rd|th)"), ("decade", YEAR + "s"), ("year", YEAR),
         ("decimal", r"[\d,]+\.\d+"), ("1,000 and more", r"\d{1,3}(?:,\d{3})+"),
         ("0 to 9", r"\d"), ("10 to 999", r"\d+"))


def spoken(paragraph):
    """The words that a recognizer and the punctuation model would give."""
    cased = (str, str.upper, str.capitalize)
    return " ".join(cased[case](word) + MARKS[mark] for word, case, mark in labelled(paragraph))


def kind_of(token):
    return next((kind for kind, form in KINDS if re.fullmatch(form, token)), "other")


def bare(token):
    return token.strip(".,?!;:\"'()[]").lower()


def in_one_form(text):
    """Replaces other usual forms: "12 percent", "5 dollars", "4000"."""
    text = re.sub(r"(\d)\s?(?:percent|per cent)\b", r"\1%", text)
    for sign, name in (("$", "dollars"), ("€", "euros?")):
        text = re.sub(rf"(?<![{sign}\d.,])(\d[\d.,]*)((?: [mb]illion)?) {name}\b",
                      sign + r"\1\2", text, flags=re.I)
    return re.sub(r"(?<![\d,.])\d{4,}(?![\d,]|\.\d)",
                  lambda m: m[0] if re.fullmatch(YEAR, m[0]) else f"{int(m[0]):,}", text)


def tokens_of(text):
    """The tokens without marks; hyphens and slashes between words divide, "24/7" is one token."""
    for token in text.split():
        isOne = re.fullmatch(r"[\d/-]+", bare(token)) and "–" not in token
        for part in [token] if isOne and "/" in token else re.split(r"[-–—/]", token):
            if bare(part):
                yield bare(part)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program")
    parser.add_argument("texts", nargs="+")
    options = parser.parse_args()
    paragraphs = [line.strip() for path in options.texts for line in open(path) if line.strip()]
    run = subprocess.run([options.program], input="\n".join(map(spoken, paragraphs)) + "\n",
                         text=True, check=True, stdout=subprocess.PIPE)
    total, right = collections.Counter(), collections.Counter()
    words = spelled = others = 0
    for paragraph, caption in zip(paragraphs, run.stdout.splitlines()):
        wanted, written = list(tokens_of(in_one_form(paragraph))), list(tokens_of(caption))
        matcher = difflib.SequenceMatcher(None, wanted, written, autojunk=False)
        for operation, a, b, c, d in matcher.get_opcodes():
            hasNumber = False
            for token in wanted[a:b]:
                if not re.search(r"\d", token):
                    words += 1
                    continue
                hasNumber = True
                total[kind_of(token)] += 1
                right[kind_of(token)] += operation == "equal"
            if operation == "equal" or hasNumber or not re.search(r"\d", " ".join(written[c:d])):
                continue
            numeric = sum(token in NUMBER_WORDS for token in wanted[a:b])
            spelled += numeric
            others += 0 if numeric else b - a
    for kind, count in total.most_common():
        print(f"{kind:16}{count:6}{right[kind]:6}{100 * right[kind] / count:6.1f} %")
    print(f"{words} words without digits: {spelled} number words written in digits, {others} others")


if __name__ == "__main__":
    main()
