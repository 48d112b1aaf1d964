#!/usr/bin/env python3
"""Writes text as it is spoken: spoken_text.py VOCABULARY FILE... > sentences

Prints one sentence per line, in lower case, with numbers as words and only words of the vocabulary
(one per line, as in words.txt); other words become <unk>. The files are plain text or .xz, with one
paragraph per line.
"""

import lzma
import re
import sys

ONES = ("zero one two three four five six seven eight nine ten eleven twelve thirteen fourteen "
        "fifteen sixteen seventeen eighteen nineteen").split()
TENS = "- - twenty thirty forty fifty sixty seventy eighty ninety".split()
ORDINALS = {"one": "first", "two": "second", "three": "third", "five": "fifth", "eight": "eighth",
            "nine": "ninth", "twelve": "twelfth"}
SCALES = ((10**12, "trillion"), (10**9, "billion"), (10**6, "million"), (10**3, "thousand"))
CURRENCIES = {"$": "dollars", "€": "euros", "£": "pounds"}
SPOKEN_SIGNS = {"&": " and ", "%": " percent ", "+": " plus ", "=": " equals ", "@": " at "}

# An opening bracket, a note such as "laughter" and the closing one.
NOTE = re.compile(r"\[[^\]]*\]|\([^)]*\)|<[^>]*>|\{[^}]*\}")
SENTENCE_END = re.compile(r"(?<=[.?!…;:])[\"')]*\s+|\s+[-–—]+\s+|[–—]")
TITLES = re.compile(r"\b(mr|mrs|ms|dr|st|jr|sr|vs|inc|co|no)\.", re.IGNORECASE)
TOKEN = re.compile(r"[€$£]?\d[\d,]*(?:\.\d+)?(?:st|nd|rd|th|s|k)?\b|[^\W\d_]+(?:'[^\W\d_]+)*'?|'[a-z]+")
CAPITALS = re.compile(r"^[A-Z]{2,5}s?$")


def cardinal(number):
    if number < 20:
        return [ONES[number]]
    if number < 100:
        return [TENS[number // 10]] + (cardinal(number % 10) if number % 10 else [])
    if number < 1000:
        rest = number % 100
        return [ONES[number // 100], "hundred"] + (["and"] + cardinal(rest) if rest else [])
    for size, name in SCALES:
        if number >= size:
            rest = number % size
            return cardinal(number // size) + [name] + (cardinal(rest) if rest else [])
    return []


def year(number):
    high, low = divmod(number, 100)
    if 2000 <= number < 2010:
        return cardinal(number)
    if low == 0:
        return cardinal(high) + ["hundred"]
    return cardinal(high) + (["oh", ONES[low]] if low < 10 else cardinal(low))


def plural(words):
    last = words[-1]
    return words[:-1] + [last[:-1] + "ies" if last.endswith("y") else last + "s"]


def ordinal(words):
    last = words[-1]
    if last in ORDINALS:
        return words[:-1] + [ORDINALS[last]]
    return words[:-1] + [last[:-1] + "ieth" if last.endswith("y") else last + "th"]


def number_words(token):
    """The words of a token such as 12, 1,500, 3.5, 1990s, 2nd or $20."""
    unit = CURRENCIES.get(token[0])
    plain = token.lstrip("".join(CURRENCIES)).replace(",", "")
    digits, point, decimals, ending = re.fullmatch(r"(\d+)(\.?)(\d*)([a-z]*)", plain).groups()
    if len(digits) > 15:
        return ["<unk>"]
    whole = int(digits)
    if len(digits) == 4 and 1100 <= whole < 2100 and not unit and not point and "," not in token:
        words = year(whole)
    elif len(digits) > 1 and digits[0] == "0":
        words = ["oh" if each == "0" else ONES[int(each)] for each in digits]
    else:
        words = cardinal(whole)
    if point:
        words = words + ["point"] + [ONES[int(each)] for each in decimals]
    elif ending in ("st", "nd", "rd", "th"):
        words = ordinal(words)
    elif ending == "s":
        words = plural(words)
    elif ending == "k":
        words = words + ["thousand"]
    if unit:
        words = words + [unit.removesuffix("s") if words == ["one"] else unit]
    return words


class Speaker:
    """Writes sentences with the words of one vocabulary."""

    def __init__(self, vocabulary):
        self.vocabulary = vocabulary

    def word(self, token):
        lower = token.lower()
        if lower in self.vocabulary:
            if not (CAPITALS.match(token) and lower in ("it", "us", "am", "pm", "ad", "id")):
                return [lower]
            return [lower] if lower in ("it", "us", "id") else list(lower)
        if lower.strip("'") in self.vocabulary:
            return [lower.strip("'")]
        if CAPITALS.match(token):  # an abbreviation is spelled
            letters = list(token.rstrip("s").lower())
            return letters[:-1] + [letters[-1] + "'s"] if token.endswith("s") else letters
        if lower.endswith("'s") and lower[:-2] in self.vocabulary:
            return [lower[:-2], "'s"] if "'s" in self.vocabulary else ["<unk>"]
        return ["<unk>"]

    def sentence(self, text):
        words = []
        for token in TOKEN.findall(text):
            found = number_words(token) if any(c.isdigit() for c in token) else self.word(token)
            words += [each if each in self.vocabulary else "<unk>" for each in found]
        return words

    def sentences(self, paragraph):
        text = NOTE.sub(" ", paragraph.replace("’", "'").replace("‘", "'"))
        for sign, spoken in SPOKEN_SIGNS.items():
            text = text.replace(sign, spoken)
        text = re.sub(r"(?<=\w)[-‐‑/](?=\w)", " ", TITLES.sub(r"\1", text))
        for part in SENTENCE_END.split(text):
            if words := self.sentence(part):
                yield words


def lines(path):
    with (lzma.open if path.endswith(".xz") else open)(path, "rt", encoding="utf-8") as file:
        yield from file


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        vocabulary = {line.split()[0] for line in file if line[0].isalpha() or line[0] == "'"}
    speaker = Speaker(vocabulary)
    for path in sys.argv[2:]:
        for paragraph in lines(path):
            for words in speaker.sentences(paragraph):
                print(" ".join(words))


if __name__ == "__main__":
    main()
