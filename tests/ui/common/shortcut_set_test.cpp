// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/shortcut_set.h"

#include "captions/model_fixture.h"
#include "language/localization.h"
#include "support/memory_preferences.h"
#include "support/scripted_shortcuts.h"
#include "support/suite.h"
#include "ui/common/app_commands.h"

#include <QSignalSpy>

using namespace velun;

namespace {

struct Fixture : test::ModelFixture {
  Fixture() {
    QObject::connect(&commands, &AppCommands::triggered, &commands,
                     [this](AppCommand command) { performed.push_back(command); });
  }

  AppCommands commands{*model, [] {
                         return WindowState{.canClickThrough = true};
                       }};
  test::ScriptedShortcuts keys;
  test::MemoryPreferences preferences;
  std::vector<AppCommand> performed;
};

}  // namespace

class ShortcutSetTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void noKeysAreTakenAtFirst() {
    Fixture fixture;
    const ShortcutSet shortcuts(fixture.commands, fixture.keys, fixture.preferences);
    QVERIFY(fixture.keys.set.empty());
    QVERIFY(shortcuts.rows().size() >= 3);
    QCOMPARE(fixture.preferences.writes, 0);
  }

  void chosenKeysAreTakenAndStored() {
    Fixture fixture;
    ShortcutSet shortcuts(fixture.commands, fixture.keys, fixture.preferences);
    QSignalSpy changed(&shortcuts, &ShortcutSet::changed);
    shortcuts.setKeys("toggle-panel", QKeySequence("Ctrl+Alt+V, Ctrl+X"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(fixture.keys.set,
             std::vector<GlobalShortcut>({{"toggle-panel", "Show or Hide the Caption Window",
                                           QKeySequence("Ctrl+Alt+V")}}));
    QCOMPARE(fixture.preferences.get<QString>("shortcut toggle-panel"),
             std::optional<QString>("Ctrl+Alt+V"));
    const ShortcutSet again(fixture.commands, fixture.keys, fixture.preferences);
    QCOMPARE(fixture.keys.set.size(), std::size_t(1));
    shortcuts.setKeys("toggle-panel", {});
    QVERIFY(fixture.keys.set.empty());
  }

  void damagedKeysAreNone() {
    Fixture fixture;
    fixture.preferences.values["shortcut toggle-panel"] = QString("Hyper+Nonsense");
    const ShortcutSet shortcuts(fixture.commands, fixture.keys, fixture.preferences);
    QVERIFY(fixture.keys.set.empty());
  }

  void aPressedKeyTriggersItsCommand() {
    Fixture fixture;
    const ShortcutSet shortcuts(fixture.commands, fixture.keys, fixture.preferences);
    Q_EMIT fixture.keys.triggered("toggle-click-through");
    Q_EMIT fixture.keys.triggered("unknown");
    QCOMPARE(fixture.performed, std::vector<AppCommand>({AppCommand::toggleClickThrough}));
  }

  void keysOfAnotherProgramAreMarked() {
    Fixture fixture;
    const ShortcutSet shortcuts(fixture.commands, fixture.keys, fixture.preferences);
    QSignalSpy changed(&shortcuts, &ShortcutSet::changed);
    fixture.keys.take("toggle-captions");
    QCOMPARE(changed.count(), 1);
    QVERIFY(shortcuts.rows().front().isTaken);
  }

  void titlesFollowTheInterfaceLanguage() {
    Fixture fixture;
    ShortcutSet shortcuts(fixture.commands, fixture.keys, fixture.preferences);
    shortcuts.setKeys("toggle-captions", QKeySequence("F9"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(shortcuts.rows().front().title, QString("자막 시작 또는 중지"));
    QCOMPARE(fixture.keys.set.front().description, QString("자막 시작 또는 중지"));
  }
};

QTEST_MAIN(ShortcutSetTest)
#include "shortcut_set_test.moc"
