"""Tests the page of speech models that scripts/model-table writes."""

import importlib.machinery
import importlib.util
import json
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


def load(name):
    loader = importlib.machinery.SourceFileLoader(name, str(ROOT / "scripts" / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(module)
    return module


table = load("model-table")
MODELS = json.loads(table.CATALOGUE.read_text())["models"]


class ModelTableTest(unittest.TestCase):
    def test_the_page_is_that_of_the_catalogue(self):
        self.assertEqual(table.PAGE.read_text(), table.page(MODELS),
                         "run scripts/model-table and commit docs/models.md")

    def test_every_recognition_model_is_listed(self):
        page = table.page(MODELS)
        for model in MODELS:
            self.assertEqual(f"| {model['title']} |" in page, model["kind"] == "recognition",
                             model["id"])

    def test_facts_of_a_language_replace_those_of_the_model(self):
        model = {"quality": "good", "languageFacts": {"vi": {"quality": "higherErrors"}}}
        self.assertEqual(table.quality_and_errors(model, "vi")[0], "higher errors")
        self.assertEqual(table.quality_and_errors(model, "es"), ("good", "none published"))


if __name__ == "__main__":
    unittest.main()
