"""Tests the page that scripts/bench writes."""

import importlib.machinery
import importlib.util
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parent.parent.parent / "scripts" / "bench"


def load():
    loader = importlib.machinery.SourceFileLoader("bench", str(SCRIPT))
    spec = importlib.util.spec_from_loader("bench", loader)
    module = importlib.util.module_from_spec(spec)
    loader.exec_module(module)
    return module


bench = load()


class BenchPageTest(unittest.TestCase):
    def line(self, row):
        goals = [{"figure": row["name"], "what": "Word errors", "at_most": 20}]
        text = bench.page([row], goals)
        return text, next(line for line in text.splitlines() if row["name"] in line)

    def test_rows_may_tell_the_number_of_words(self):
        self.assertEqual(bench.parsed("wer 16.9 % 71"),
                         {"name": "wer", "value": 16.9, "unit": "%", "words": 71})
        self.assertEqual(bench.parsed("rss 254.0 MB"), {"name": "rss", "value": 254.0, "unit": "MB"})
        self.assertIsNone(bench.parsed("# one two three"))
        self.assertIsNone(bench.parsed("a line of five words"))

    def test_figures_of_few_words_are_marked(self):
        text, line = self.line({"name": "wer", "value": 16.9, "unit": "%", "words": 71})
        self.assertIn("16.9 % of 71 words †", line)
        self.assertIn("† Fewer than 500 words", text)

    def test_figures_of_many_words_are_not_marked(self):
        text, line = self.line({"name": "wer", "value": 16.9, "unit": "%", "words": 3241})
        self.assertIn("16.9 % of 3,241 words |", line)
        self.assertNotIn("†", text)

    def test_figures_without_words_are_not_marked(self):
        text, _ = self.line({"name": "rss", "value": 15.0, "unit": "MB"})
        self.assertNotIn("†", text)


if __name__ == "__main__":
    unittest.main()
