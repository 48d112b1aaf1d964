# SPDX-License-Identifier: GPL-3.0-or-later
"""Turns written English into what a recognizer gives, lower-case words without marks, with, for each
word, the case (0 lower, 1 UPPER, 2 Capital) and the mark after it (0 none, 1 comma, 2 full stop,
3 question mark)."""
import re

LOWER, UPPER, CAPITAL = range(3)
NONE, COMMA, STOP, QUESTION = range(4)

ONES = ("zero one two three four five six seven eight nine ten eleven twelve thirteen fourteen "
        "fifteen sixteen seventeen eighteen nineteen").split()
TENS = "zero ten twenty thirty forty fifty sixty seventy eighty ninety".split()
ORDINALS = dict(one="first", two="second", three="third", five="fifth", eight="eighth", nine="ninth",
                twelve="twelfth")
LARGE = ("hundred", "thousand", "million", "billion", "trillion")
# How the built-in recognizer spells what is written with a full stop.
TITLES = {"mr": "mr", "mrs": "mrs", "ms": "ms", "dr": "dr", "jr": "jr", "st": "saint",
          "vs": "versus", "sr": "senior", "prof": "professor", "no": "number"}
MARKS = {",": COMMA, ";": COMMA, ":": COMMA, ".": STOP, "!": STOP, "?": QUESTION}
NUMBER = re.compile(r"^([$£€])?(\d{1,3}(?:,\d{3})+|\d{1,9})(\.\d+)?(st|nd|rd|th|s|'s|%|k)?$", re.I)
CURRENCY = {"$": "dollars", "£": "pounds", "€": "euros"}
TOKEN = re.compile(r"^(\W*)(.*?)(\W*)$")
ABBREVIATION = re.compile(r"(?:[A-Za-z]\.)+[A-Za-z]")  # without its last full stop


def number(n):
    if n < 20:
        return [ONES[n]]
    if n < 100:
        return [TENS[n // 10]] + ([ONES[n % 10]] if n % 10 else [])
    if n < 1000:
        return [ONES[n // 100], "hundred"] + (number(n % 100) if n % 100 else [])
    for unit, name in ((10 ** 9, "billion"), (10 ** 6, "million"), (1000, "thousand")):
        if n >= unit:
            return number(n // unit) + [name] + (number(n % unit) if n % unit else [])


def year(n):
    if 2000 <= n < 2010 or n % 1000 == 0:
        return number(n)
    head, tail = n // 100, n % 100
    if not tail:
        return number(head) + ["hundred"]
    return number(head) + (["o"] if tail < 10 else []) + number(tail)


def ordinal(words):
    last = words[-1]
    last = ORDINALS.get(last) or (last[:-1] + "ieth" if last.endswith("y") else
                                  last + ("h" if last.endswith("t") else "th"))
    return words[:-1] + [last]


def plural(words):
    last = words[-1]
    return words[:-1] + [last[:-1] + "ies" if last.endswith("y") else last + "s"]


def spoken_number(text):
    """The words of a number in digits; None for other texts."""
    match = NUMBER.match(text)
    if not match:
        return None
    sign, whole, part, end = match.groups()
    n = int(whole.replace(",", ""))
    isYear = 1100 <= n < 2100 and "," not in whole and not sign and not part
    words = year(n) if isYear else number(n)
    if part:
        words = words + ["point"] + [ONES[int(d)] for d in part[1:]]
    end = (end or "").lower()
    if end in ("st", "nd", "rd", "th"):
        words = ordinal(words)
    elif end in ("s", "'s"):
        words = plural(words)
    elif end == "%":
        words = words + ["percent"]
    elif end == "k":
        words = words + ["thousand"]
    return words + ([CURRENCY[sign]] if sign else [])


def with_currency_last(tokens):
    """"$3 million" is said "three million dollars"."""
    tokens = list(tokens)
    for at in range(len(tokens) - 1):
        unit = tokens[at + 1].rstrip(".,?!;:")
        if tokens[at][:1] in CURRENCY and unit.lower() in LARGE:
            rest = tokens[at + 1][len(unit):]
            tokens[at + 1] = unit + " " + CURRENCY[tokens[at][0]] + rest
            tokens[at] = tokens[at][1:]
    return " ".join(tokens).split()


def mark_in(text):
    return max((MARKS[c] for c in text if c in MARKS), default=NONE)


def mark_after(body, tail, following, isLast):
    """The mark of a token; a full stop may belong to an abbreviation."""
    if "..." in tail:
        goesOn = not following[:1].isupper() or following[:2] in ("I ", "I'")
        return COMMA if goesOn else STOP
    mark = mark_in(tail)
    if mark != STOP:
        return mark
    isInitial = len(body) == 1 and body.isalpha() and body.isupper() and body != "I"
    if isInitial and not isLast and following[:1].isupper():
        return NONE
    if ABBREVIATION.fullmatch(body) and following[:1].islower():
        return NONE
    return mark


def case_of(text):
    letters = re.sub(r"[^A-Za-z]", "", re.sub(r"'s$", "", text))
    if len(letters) > 1 and letters.isupper():
        return UPPER
    return CAPITAL if any(c.isupper() for c in letters) else LOWER


def only_letters(text):
    return re.sub(r"[^a-z']", "", text.lower())


def words_of_part(part):
    """Words and their cases of a part of a token without hyphens."""
    spoken = spoken_number(part)
    if spoken:
        return [[word, LOWER] for word in spoken]
    if ABBREVIATION.fullmatch(part):  # U.S
        return [[c.lower(), UPPER if c.isupper() else LOWER] for c in part.split(".")]
    if "." in part and not part.endswith("."):  # example.com
        out = []
        for i, half in enumerate(part.split(".")):
            word = only_letters(half)
            if i and word:
                out.append(["dot", LOWER])
            if word:
                out.append([word, CAPITAL if half[:1].isupper() else LOWER])
        return out
    word = only_letters(part).strip("'")
    return [[word, case_of(part)]] if word else []


def words_of_body(body):
    out = []
    for piece in re.split(r"[-/]", body):
        spoken = spoken_number(piece)
        if spoken:
            out.extend([word, LOWER] for word in spoken)
            continue
        for part in re.split(r"(?<=[a-z])(?=\d)|(?<=\d)(?=[A-Za-z])|[:,;?!]", piece):
            out.extend(words_of_part(part))
    return out


def labelled(paragraph):
    """A list of [word, case, mark]."""
    out = []
    tokens = with_currency_last(paragraph.split())
    for at, token in enumerate(tokens):
        if token == "-":
            if out and not out[-1][2]:
                out[-1][2] = COMMA
            continue
        head, body, tail = TOKEN.match(token).groups()
        if head.endswith(tuple(CURRENCY)):
            body = head[-1] + body
        if tail.startswith("%"):
            body += "%"
        isLast = at + 1 == len(tokens)
        following = "A" if isLast else tokens[at + 1].lstrip("\"'(-")
        mark = mark_after(body, tail, following, isLast) if body else mark_in(head + tail)
        title = TITLES.get(body.lower().rstrip("."))
        if title and mark == STOP and tail.startswith(".") and following[:1].isalnum():
            out.append([title, CAPITAL if body[0].isupper() else LOWER, NONE])
            continue
        words = words_of_body(body)
        if words and (body[0].isdigit() or body[0] in CURRENCY):
            if not out or out[-1][2] >= STOP:  # a number where a sentence begins
                words[0][1] = CAPITAL
        out.extend([word, case, NONE] for word, case in words)
        if out:
            out[-1][2] = (mark or out[-1][2]) if words else max(out[-1][2], mark)
    return out
