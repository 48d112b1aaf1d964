"""The settings page "Languages & Models" of the real program, with a local server of models."""

import json
import unittest

from program_case import ProgramCase
from tiny_model import FILES, MODEL, TINY, TITLE, download, mirror, write_catalogue

KOREAN = "Into Korean"


def install(model, name, models):
    """Installs a model of one file as if downloaded and verified."""
    folder = models / model
    folder.mkdir(parents=True)
    file = folder / name
    file.write_bytes((FILES / name).read_bytes())
    digest = download(name)["sha256"]
    verified = {"name": name, "bytes": file.stat().st_size,
                "modified": file.stat().st_mtime_ns // 1_000_000,
                "sha256": digest, "download": digest}
    (folder / "verified.json").write_text(json.dumps({"files": [verified]}))


def translation(model, source, target, score, name):
    """A translation model that is better than those of the program; its only file is not usable."""
    return {"id": model, "kind": "translation", "languages": [source, target],
            "licence": "MPL-2.0", "options": {"comet": score}, "downloads": [download(name)]}


TRANSLATIONS = [translation("enko-best", "en", "ko", 0.99, TINY["joiner"]),
                translation("enko-lesser", "en", "ko", 0.98, TINY["tokens"]),
                translation("fren", "fr", "en", 0.99, TINY["decoder"])]
UNCLEAR = {"id": "unclear", "kind": "recognition", "title": "Unclear", "languages": ["eu"],
           "licence": "Unclear", "licenceNotice": {"en": "Read this.", "ko": "읽으세요."},
           "writes": [], "quality": "fair", "options": {"locales": ["eu_ES"]},
           "downloads": [download(TINY["decoder"])]}


class Models(ProgramCase):
    def setUp(self):
        super().setUp()
        catalogue = self.desktop.root / "catalogue.json"
        write_catalogue(catalogue, *TRANSLATIONS, UNCLEAR)
        self.desktop.environment["VELUN_MODEL_CATALOGUE"] = str(catalogue)
        self.models = self.desktop.home / "data" / "app.velun.Velun" / "models"
        self.folder = self.models / MODEL

    def serve(self):
        server = mirror()
        self.addCleanup(server.end)
        self.desktop.environment["VELUN_MODEL_MIRROR"] = server.address()
        return server

    def open_page(self):
        self.launch()
        self.settings = self.open_window("show-models", "Velun Settings")
        self.settings.wait_for("push button", "Add from File…")

    def button(self, text, model=TITLE):
        return self.settings.wait_for("push button", f"{text}: {model}")

    def answer(self, title, button):
        question = self.window(title)
        question.wait_for("push button", button).press()
        self.wait("the question to go", lambda: not question.is_showing)

    def is_used(self, title):
        return self.settings.find(name=f"{title}, In Use") is not None

    def test_a_model_is_installed_chosen_and_removed(self):
        self.serve()
        self.open_page()
        self.button("Install").press()
        self.button("Remove…")
        self.assertTrue((self.folder / TINY["encoder"]).exists())
        self.wait("the new model to be used", lambda: self.is_used(TITLE))
        self.settings.wait_for("label", "Models use 0.4 MB")

        self.settings.wait_for("push button", "Use This One: Built-in recognizer").press()
        self.wait_for_preference("recognizer.en_US", "built-in")
        self.wait("the built-in recognizer to be used",
                  lambda: self.is_used("Built-in recognizer"))
        self.button("Use This One").press()
        self.wait_for_preference("recognizer.en_US", MODEL)
        self.button("Choose Automatically").press()
        self.wait_for_preference("recognizer.en_US", "")

        self.button("Remove…").press()
        self.answer(f"Remove “{TITLE}”?", "Remove")
        self.button("Install")
        self.wait("the files to go", lambda: not (self.folder / TINY["encoder"]).exists())
        self.quit()

    def open_korean(self):
        self.open_page()
        self.settings.wait_for("push button", "Korean, 한국어").press()

    def test_a_translation_is_paused_resumed_and_removed(self):
        server = self.serve()
        server.plan.append((1000, "stall"))
        self.open_korean()
        self.button("Install", KOREAN).press()
        self.button("Pause", KOREAN).press()
        self.button("Resume", KOREAN).press()
        self.button("Remove…", KOREAN)
        self.assertEqual([offset for _, offset in server.requests], [0, 1000])
        self.assertTrue((self.models / "enko-best" / TINY["joiner"]).exists())

        self.button("License…", KOREAN).press()
        licence = self.window("License of “English into Korean”")
        self.assertIn("Mozilla Public License", licence.wait_for("text", "Text of the license").text)
        licence.wait_for("push button", "Close").press()
        self.wait("the license to go", lambda: not licence.is_showing)

        self.button("Remove…", KOREAN).press()
        self.answer(f"Remove “{KOREAN}”?", "Remove")
        self.button("Install", KOREAN)
        self.wait("the files to go", lambda: not (self.models / "enko-best").exists())
        self.quit()

    def test_the_download_of_a_translation_is_cancelled(self):
        server = self.serve()
        server.plan.append((1000, "stall"))
        self.open_korean()
        self.button("Install", KOREAN).press()
        self.button("Cancel", KOREAN).press()
        self.button("Install", KOREAN)
        self.assertFalse((self.models / "enko-best").exists())
        self.quit()

    def test_a_better_translation_than_the_installed_one_is_reachable(self):
        server = self.serve()
        install("enko-lesser", TINY["tokens"], self.models)
        self.open_korean()
        self.button("Update", KOREAN).press()
        self.wait("the update", lambda: not any(
            node.is_showing for node in self.settings.find_all(name=f"Update: {KOREAN}")))
        self.button("Remove…", KOREAN)
        self.assertEqual([name for name, _ in server.requests], [TINY["joiner"]])
        self.quit()

    def test_a_way_through_english_is_one_download(self):
        server = self.serve()
        self.program.write_preferences(localeID="fr_FR")
        self.open_korean()
        self.button("Install", KOREAN).press()
        self.button("Remove…", KOREAN)
        self.assertEqual({name for name, _ in server.requests}, {TINY["joiner"], TINY["decoder"]})
        self.quit()

    def test_a_licence_is_agreed_to_before_a_language_is_downloaded(self):
        server = self.serve()
        self.program.write_preferences(localeID="eu_ES")
        self.launch()
        self.program.action("show-panel")
        panel = self.application.wait_for(name="Velun Captions")
        self.program.action("toggle-captions")
        panel.wait_for("push button", "Languages & Models…").press()
        self.settings = self.window("Velun Settings")
        self.assertEqual(server.requests, [])
        self.button("Install", "Unclear").press()
        self.answer("The license of “Unclear” is not clear", "Agree and Download")
        self.wait("the download", lambda: server.requests)
        self.quit()

    def test_languages_are_searched(self):
        self.open_page()
        self.settings.wait_for("text", "Search languages").set_text("프랑")
        self.settings.wait_for("push button", "French (France), français")
        self.wait("the search", lambda: not self.settings.find(
            "push button", "English (United States), American English").is_showing)
        self.quit()

    def test_files_put_in_by_hand_are_recognized_without_a_network(self):
        own = self.desktop.root / "own"
        own.mkdir()
        for name in TINY.values():
            (own / name).write_bytes((FILES / name).read_bytes())
        (own / "photo.jpg").write_bytes(b"not a model")
        self.open_page()
        self.add(own / "photo.jpg")
        self.settings.wait_for("notification")
        self.wait("the refusal", lambda: any(
            "photo.jpg" in node.name for node in self.settings.find_all("notification")))
        self.add(own / TINY["encoder"])
        self.button("Remove…")
        self.wait("the model to be used", lambda: self.is_used(TITLE))
        self.quit()

    def add(self, path):
        self.settings.wait_for("push button", "Add from File…").press()
        dialog = self.window("Add a Model from a File")
        dialog.wait_for("text").set_text(str(path))
        dialog.wait_for("push button", "Open").press()
        self.wait("the dialog to go", lambda: not dialog.is_showing)


if __name__ == "__main__":
    unittest.main()
