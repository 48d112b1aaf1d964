"""Tests the page of models that scripts/model-table writes."""

import importlib.machinery
import importlib.util
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


def load(name):
    loader = importlib.machinery.SourceFileLoader(name, str(ROOT / "scripts" / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(module)
    return module


table = load("model-table")
MODELS = table.catalogue()


class ModelTableTest(unittest.TestCase):
    def test_the_page_is_that_of_the_catalogue(self):
        self.assertEqual(table.PAGE.read_text(), table.page(MODELS),
                         "run scripts/model-table and commit docs/models.md")

    def test_every_recognition_and_speaker_model_is_listed(self):
        page = table.page(MODELS)
        for model in MODELS:
            is_listed = "title" in model and f"| {model['title']} |" in page
            self.assertEqual(is_listed, model["kind"] in ("recognition", "speakers"), model["id"])

    def test_every_translation_model_is_listed(self):
        translations = [model for model in MODELS if model["kind"] == "translation"]
        table_rows = list(table.translation_table(translations))[2:]
        self.assertEqual(len(table_rows), len(translations))
        page = table.page(MODELS)
        for row in table_rows:
            self.assertIn(row, page)

    def test_the_translation_model_with_the_highest_score_is_first(self):
        low, high, unknown = ({"options": {"comet": score}} for score in (0.8, 0.9, None))
        self.assertEqual(table.by_preference([low, high]), [high, low])
        self.assertEqual(table.by_preference([low, unknown, high]), [low, unknown, high])

    def test_facts_of_a_language_replace_those_of_the_model(self):
        model = {"quality": "good", "languageFacts": {"vi": {"quality": "higherErrors"}}}
        self.assertEqual(table.quality_and_errors(model, "vi")[0], "higher errors")
        self.assertEqual(table.quality_and_errors(model, "es"), ("good", "none published"))


if __name__ == "__main__":
    unittest.main()
