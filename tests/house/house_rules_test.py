"""Checks the source tree against the rules, and the rules against samples that break them."""

import json
import re
import unittest
from pathlib import Path

import rules

ROOT = Path(__file__).resolve().parent.parent.parent
SOURCES = sorted(p for p in (ROOT / "src").rglob("*") if p.suffix in (".h", ".cpp"))
CODE = SOURCES + sorted(p for folder in ("tests", "bench") for p in (ROOT / folder).rglob("*")
                        if p.suffix in (".h", ".cpp"))



def is_python(path):
    return path.suffix == ".py" or (path.is_file() and not path.suffix
                                    and path.read_bytes().startswith(b"#!/usr/bin/env python3"))


SCRIPTS = sorted(p for folder in ("tests", "scripts") for p in (ROOT / folder).rglob("*")
                 if is_python(p) and not p.is_relative_to(ROOT / "tests" / "house"))


def below_src(path):
    return str(path.relative_to(ROOT / "src"))


class TheTree(unittest.TestCase):
    def check(self, complaints):
        found = list(complaints)
        self.assertFalse(found, "\n" + "\n".join(found))

    def test_includes_follow_the_layers(self):
        self.check(c for p in SOURCES for c in rules.include_complaints(below_src(p), p.read_text()))

    def test_links_follow_the_layers(self):
        self.check(rules.link_complaints(
            [d for p in (ROOT / "src").rglob("CMakeLists.txt")
             for d in rules.declared_layers(below_src(p.parent), p.read_text())]))

    def test_the_table_in_architecture_matches_the_rules(self):
        self.check(rules.map_complaints((ROOT / "ARCHITECTURE.md").read_text()))

    def test_names_in_architecture_exist(self):
        self.check(rules.name_complaints((ROOT / "ARCHITECTURE.md").read_text(),
                                         "".join(p.read_text() for p in CODE)))

    def test_texts_are_in_both_languages(self):
        self.check(c for p in SOURCES for c in rules.text_complaints(below_src(p), p.read_text()))

    def test_shown_literals_pass_through_the_language(self):
        self.check(c for p in SOURCES
                   for c in rules.untranslated_complaints(below_src(p), p.read_text()))

    def test_files_are_small(self):
        counts = {p: p.read_text().count("\n") for p in CODE}
        ordered = sorted(counts.values())
        print(f"{len(ordered)} files: median {ordered[len(ordered) // 2]} lines, "
              f"nine in ten under {ordered[int(len(ordered) * 0.9)] + 1}")
        self.check(rules.size_complaints(counts))

    def test_files_name_their_licence(self):
        self.check(c for p in CODE for c in rules.licence_complaints(p.name, p.read_text()))

    def test_options_of_models_are_described_and_read(self):
        catalogue = ROOT / "data" / "models"
        models = [model for path in sorted(catalogue.glob("*.json"))
                  for model in json.loads(path.read_text())["models"]]
        self.check(rules.option_complaints(models, (catalogue / "README.md").read_text(),
                                           "".join(p.read_text() for p in SOURCES)))

    def test_headers_are_guarded(self):
        self.check(f"{p} has no #pragma once" for p in CODE
                   if p.suffix == ".h" and "#pragma once" not in p.read_text())

    def test_scripts_name_no_path_of_one_machine(self):
        home = re.compile(r"/(?:home|Users|root|work)/\w+/")
        self.check(f"{p}: {m[0]}" for p in CODE + list((ROOT / "scripts").rglob("*"))
                   if p.is_file() and p.suffix != ".pyc"
                   for m in home.finditer(p.read_text(errors="replace")))

    def test_notifications_are_signals(self):
        self.check(c for p in SOURCES if p.suffix == ".h"
                   for c in rules.callback_complaints(below_src(p), p.read_text()))

    def test_each_asynchronous_need_has_one_way(self):
        self.check(c for p in SOURCES
                   for c in rules.restricted_complaints(below_src(p), p.read_text()))

    def test_tests_wait_for_conditions(self):
        # The throttled helper plays a slow machine.
        paths = [p for p in CODE + SCRIPTS
                 if not p.is_relative_to(ROOT / "src") and not p.is_relative_to(ROOT / "bench")
                 and p.name != "throttled_helper.cpp"]
        self.check(c for p in paths
                   for c in rules.fixed_wait_complaints(str(p.relative_to(ROOT)), p.read_text()))


class TheRules(unittest.TestCase):
    def test_a_callback_member_is_found(self):
        for member in ("std::function<void()> onChange;",
                       "std::function<void(int,\n                   bool)> onEnd = nullptr;"):
            self.assertEqual(len(list(rules.callback_complaints("a.h", member))), 1, member)
        for other in ("explicit Watch(std::function<void()> onChange);",
                      "std::function<void()> onChange_;", "// std::function<void()> onChange;",
                      "std::function<void()> stop;"):
            self.assertFalse(list(rules.callback_complaints("a.h", other)), other)

    def test_a_second_way_is_found(self):
        for text in ("#include <QTimer>", "startTimer(20);", "std::jthread worker;",
                     "QThreadPool::globalInstance()->start(work);", "QSaveFile file(path);",
                     "QProcess helper;", "const auto task = std::async(work);"):
            self.assertEqual(len(list(rules.restricted_complaints("ui/a.cpp", text))), 1, text)
        for text in ("std::thread::hardware_concurrency()", "// no QTimer", "std::stop_token stop;"):
            self.assertFalse(list(rules.restricted_complaints("ui/a.cpp", text)), text)
        clock = "platform/foundation/system_clock.cpp"
        self.assertFalse(list(rules.restricted_complaints(clock, "#include <QTimer>")))

    def test_a_fixed_wait_is_found(self):
        for path, text in (("tests/a.cpp", "QTest::qWait(50);"), ("tests/a.py", "time.sleep(1)"),
                           ("tests/a.h", "std::this_thread::sleep_for(10ms);"),
                           ("scripts/a.py", "time.sleep(PAUSE)")):
            self.assertEqual(len(list(rules.fixed_wait_complaints(path, text))), 1, text)
        for text in ("QTest::qWaitFor(isReady, 50);", '{"/usr/bin/sleep", "1000"}'):
            self.assertFalse(list(rules.fixed_wait_complaints("tests/a.cpp", text)), text)

    def test_an_include_upwards_is_found(self):
        found = list(rules.include_complaints("model/line.h", '#include "ui/common/symbols.h"'))
        self.assertEqual(len(found), 1)

    def test_an_include_of_another_services_implementation_is_found(self):
        text = '#include "platform/audio/linux/pipewire_stream.h"'
        self.assertEqual(len(list(rules.include_complaints("captions/a.cpp", text))), 1)

    def test_a_library_outside_its_place_is_found(self):
        text = "#include <pipewire/pipewire.h>"
        self.assertEqual(len(list(rules.include_complaints("audio/system_audio.cpp", text))), 1)
        self.assertFalse(list(rules.include_complaints("platform/audio/linux/a.cpp", text)))

    def test_an_include_downwards_is_allowed(self):
        self.assertFalse(list(rules.include_complaints("ui/a.h", '#include "model/line.h"')))

    def test_a_link_upwards_is_found(self):
        model = "velun_layer(velun_model SOURCES a.cpp LINKS velun_settings Qt6::Core)"
        settings = "velun_layer(velun_settings SOURCES app_settings.cpp LINKS velun_model)"
        declared = [*rules.declared_layers("model", model),
                    *rules.declared_layers("settings", settings)]
        self.assertEqual(list(rules.link_complaints(declared)),
                         ["velun_model (model) may not link velun_settings (settings)"])
        hidden = rules.declared_layers(
            "model", "target_link_libraries(velun_model PRIVATE velun_settings)")
        self.assertEqual(len(list(rules.link_complaints(declared[1:] + [
            ("velun_model", "model", [])] + list(hidden)))), 1)

    def test_a_service_cannot_use_the_implementation_of_another(self):
        text = '#include "platform/models/store/unpack.h"'
        self.assertEqual(
            len(list(rules.include_complaints("platform/speech/neural/a.cpp", text))), 1)
        self.assertFalse(list(rules.include_complaints("platform/models/store/a.cpp", text)))
        declared = [("velun_a", rules.layer_of("platform/speech/a.cpp"), ["velun_b"]),
                    ("velun_b", rules.layer_of("platform/models/store/b.cpp"), [])]
        self.assertEqual(len(list(rules.link_complaints(declared))), 1)

    def test_a_wrong_table_in_architecture_is_found(self):
        text = (ROOT / "ARCHITECTURE.md").read_text()
        for wrong in (text.replace("nothing of ours", "language"),
                      text.replace("; speech also audio", ""),
                      re.sub(r"^\| `src/captions`.*\n", "", text, flags=re.M)):
            self.assertNotEqual(wrong, text)
            self.assertTrue(list(rules.map_complaints(wrong)))

    def test_a_name_that_does_not_exist_is_found(self):
        source = "class Line { void setText(); }; struct Clock;"
        for page in ("`Line::text`", "`setTexts`", "`MonoMixer`", "`setTexts(line)`"):
            self.assertEqual(len(list(rules.name_complaints(page, source))), 1, page)
        for page in ("`Line::setText`", "`setText()`", "`Clock`", "setTexts", "`src/model`",
                     "`scripts/test`", "`velun`", "`cmake --build`", '`L("English", "한국어")`'):
            self.assertFalse(list(rules.name_complaints(page, source)), page)

    def test_a_missing_language_is_found(self):
        for text in ('L("Stop")', 'L("Stop", "")', 'L("Stop", "Stop")', 'L("중지", "중지")'):
            self.assertEqual(len(list(rules.text_complaints("a.cpp", text))), 1, text)
        self.assertFalse(list(rules.text_complaints("a.cpp", 'L("Stop (" + n + ")", "중지 " + n)')))

    def test_a_literal_in_one_language_is_found(self):
        text = 'button->setText("Stop"); menu->addAction(QStringLiteral("Quit"));'
        self.assertEqual(len(list(rules.untranslated_complaints("a.cpp", text))), 2)
        self.assertFalse(list(rules.untranslated_complaints("a.cpp", 'b->setText(L("a", "b"));')))

    def test_an_option_that_is_unknown_is_found(self):
        models = [{"options": {"tokens": "a"}}, {"options": {"tokens": "b", "size": 3}}, {}]
        self.assertEqual(
            list(rules.option_complaints(models, "`tokens`, `size`", 'options["tokens"]')),
            ["The option size is read by nothing"])
        self.assertEqual(
            list(rules.option_complaints(models, "`tokens`", 'options["tokens"], options["size"]')),
            ["The option size is not described"])

    def test_long_files_are_found(self):
        self.assertFalse(list(rules.size_complaints({i: 100 for i in range(10)})))
        self.assertTrue(list(rules.size_complaints({i: 500 for i in range(10)})))


if __name__ == "__main__":
    unittest.main()
