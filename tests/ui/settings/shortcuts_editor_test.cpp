// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/shortcuts_editor.h"

#include "captions/model_fixture.h"
#include "language/localization.h"
#include "support/memory_preferences.h"
#include "support/scripted_shortcuts.h"
#include "support/suite.h"
#include "ui/common/app_commands.h"
#include "ui/common/shortcut_set.h"

#include <QKeySequenceEdit>
#include <QLabel>

using namespace velun;
using Way = GlobalShortcuts::Way;

namespace {

struct Fixture : test::ModelFixture {
  /// The label whose text begins so; null without one.
  QLabel* labelWith(const QString& text) const {
    for (QLabel* label : editor.findChildren<QLabel*>()) {
      if (label->text().startsWith(text)) return label;
    }
    return nullptr;
  }

  AppCommands commands{*model, [] {
                         return WindowState{.canClickThrough = true};
                       }};
  test::ScriptedShortcuts keys;
  test::MemoryPreferences preferences;
  ShortcutSet shortcuts{commands, keys, preferences};
  ShortcutsEditor editor{shortcuts};
};

}  // namespace

class ShortcutsEditorTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void keysThatAreTakenAreNamed() {
    Fixture f;
    QVERIFY(f.labelWith("These keys work while any window is in front."));
    f.shortcuts.setKeys("toggle-captions", QKeySequence("Ctrl+Alt+C"));
    f.keys.take("toggle-captions");
    QVERIFY(f.labelWith("Another program uses Ctrl+Alt+C."));
  }

  void aRefusalOfTheDesktopIsToldWithAWayOut() {
    Fixture f;
    f.keys.setWay(Way::desktop);
    QVERIFY(f.labelWith("The desktop asks you to confirm these keys"));
    f.keys.setRefused(true);
    const QLabel* note = f.labelWith("The desktop has not allowed these keys.");
    QVERIFY(note);
    QVERIFY(note->text().contains("toggle-captions"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(note->text().startsWith("데스크톱이 이 키를 허용하지 않았습니다."));
    f.keys.setRefused(false);
    QVERIFY(!note->text().contains("toggle-captions"));
  }

  void withoutSuchKeysThereAreOnlyCommands() {
    Fixture f;
    f.keys.setWay(Way::none);
    QVERIFY(f.labelWith("On this desktop, programs cannot have keys in every window."));
    for (const QKeySequenceEdit* edit : f.editor.findChildren<QKeySequenceEdit*>()) {
      QVERIFY(!edit->isVisibleTo(&f.editor));
    }
  }
};

QTEST_MAIN(ShortcutsEditorTest)
#include "shortcuts_editor_test.moc"
