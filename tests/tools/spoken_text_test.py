"""Tests how tools/language_model writes text as it is spoken."""

import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tools" / "language_model"))

from spoken_text import Speaker, number_words  # noqa: E402

WORDS = set("""a b i i'm p here is it dog's the dog it's well known two hundred and five dollars mr hale
            he left said in nineteen oh four""".split())


class SpokenTextTest(unittest.TestCase):
    def sentences(self, text):
        return [" ".join(words) for words in Speaker(WORDS).sentences(text)]

    def test_numbers_become_words(self):
        for token, words in (("12", "twelve"), ("1,500", "one thousand five hundred"),
                             ("3.5", "three point five"), ("1990s", "nineteen nineties"),
                             ("2nd", "second"), ("20th", "twentieth"), ("$20", "twenty dollars"),
                             ("$1", "one dollar"), ("2024", "twenty twenty four"),
                             ("1905", "nineteen oh five"), ("2005", "two thousand five"),
                             ("007", "oh oh seven"), ("10k", "ten thousand")):
            self.assertEqual(" ".join(number_words(token)), words, token)

    def test_sentences_end_at_marks_but_not_at_titles(self):
        self.assertEqual(self.sentences("Mr. Hale is here. It's the dog! [laughter]"),
                         ["mr hale is here", "it's the dog"])

    def test_hyphens_separate_words(self):
        self.assertEqual(self.sentences("a well-known dog"), ["a well known dog"])

    def test_abbreviations_are_spelled(self):
        self.assertEqual(self.sentences("the API is here"), ["the a p i is here"])

    def test_other_words_are_marked(self):
        self.assertEqual(self.sentences("the zebra is here"), ["the <unk> is here"])

    def test_numbers_in_a_sentence(self):
        self.assertEqual(self.sentences("He left in 1904 – $205, he said"),
                         ["he left in nineteen oh four", "two hundred and five dollars he said"])


if __name__ == "__main__":
    unittest.main()
