"""The settings page "Languages & Models" of the real program, with a local server of models."""

import unittest

from program_case import ProgramCase
from tiny_model import FILES, MODEL, TINY, TITLE, mirror, write_catalogue


class Models(ProgramCase):
    def setUp(self):
        super().setUp()
        catalogue = self.desktop.root / "catalogue.json"
        write_catalogue(catalogue)
        self.desktop.environment["VELUN_MODEL_CATALOGUE"] = str(catalogue)
        self.folder = self.desktop.home / "data" / "app.velun.Velun" / "models" / MODEL

    def serve(self):
        server = mirror()
        self.addCleanup(server.end)
        self.desktop.environment["VELUN_MODEL_MIRROR"] = server.address()

    def open_page(self):
        self.launch()
        self.settings = self.open_window("show-settings", "Velun Settings")
        self.settings.wait_for("page tab", "Languages & Models").press()
        self.settings.wait_for("push button", "Add from File…")

    def button(self, text):
        return self.settings.wait_for("push button", f"{text}: {TITLE}")

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
