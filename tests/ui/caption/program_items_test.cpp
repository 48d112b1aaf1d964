// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/program_items.h"

#include "language/localization.h"
#include "support/scripted_audio_platform.h"
#include "support/suite.h"

#include <QMenu>
#include <QPointer>
#include <QSignalSpy>

using namespace velun;
using Scope = ProgramChoice::Scope;

namespace {

std::vector<AudioTarget> playing(const QStringList& programs) {
  std::vector<AudioTarget> targets{{AudioTarget::Kind::output, "hdmi", "Television"}};
  for (const QString& name : programs) targets.push_back({AudioTarget::Kind::program, name, name});
  return targets;
}

struct Fixture {
  Fixture() {
    audio.onFollow = [this](test::ScriptedAudioTargets& followed) {
      targets = &followed;
    };
  }

  /// The texts of the menu's items, the checked ones with a mark.
  QStringList filled(bool isEnabled = true) {
    menu.clear();
    items.addTo(menu, isEnabled);
    QStringList texts;
    for (const QAction* action : menu.actions()) {
      if (!action->isSeparator()) texts << (action->isChecked() ? "✓" : "") + action->text();
    }
    return texts;
  }
  void choose(const QString& text) {
    for (QAction* action : menu.actions()) {
      if (action->text() == text) return action->trigger();
    }
    QFAIL(qPrintable("no item " + text));
  }

  test::ScriptedAudioPlatform audio;
  QPointer<test::ScriptedAudioTargets> targets;
  AppSettings settings;
  ProgramItems items{settings, audio, nullptr};
  QMenu menu;
};

}  // namespace

class ProgramItemsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void aNoteStandsForTheProgramsWhileNothingPlays() {
    Fixture f;
    const QStringList note{"Programs that play sound are listed here"};
    QCOMPARE(f.filled(), note);
    f.items.setFollowing(true);
    f.targets->set(playing({}));
    QCOMPARE(f.filled(), note);
    QVERIFY(!f.menu.actions().last()->isEnabled());
  }

  void theProgramsThatPlayAreOffered() {
    Fixture f;
    f.items.setFollowing(true);
    QSignalSpy changes(&f.items, &ProgramItems::changed);
    f.targets->set(playing({"Films & Music", "Zoom"}));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(f.filled(), (QStringList{"✓All Programs", "Only Films && Music", "Only Zoom",
                                      "All Except Films && Music", "All Except Zoom"}));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(f.filled(), (QStringList{"✓모든 프로그램", "Films && Music만", "Zoom만",
                                      "Films && Music 외 모두", "Zoom 외 모두"}));
    f.items.setFollowing(false);
    QVERIFY(!f.targets);
    QCOMPARE(f.filled(), QStringList{"소리를 재생하는 프로그램이 여기에 나열됩니다"});
  }

  void aChoiceIsStoredAndStaysOffered() {
    Fixture f;
    f.items.setFollowing(true);
    f.targets->set(playing({"Zoom"}));
    f.filled();
    f.choose("Only Zoom");
    QCOMPARE(f.settings.program(), (ProgramChoice{Scope::only, "Zoom"}));
    f.targets->set(playing({}));
    QCOMPARE(f.filled(), (QStringList{"All Programs", "✓Only Zoom", "All Except Zoom"}));
    f.choose("All Except Zoom");
    QCOMPARE(f.settings.program(), (ProgramChoice{Scope::allBut, "Zoom"}));
    f.filled();
    f.choose("All Programs");
    QCOMPARE(f.settings.program(), ProgramChoice());
  }

  void aChoiceLeavesTheMicrophoneAndStartsOnce() {
    Fixture f;
    f.settings.setUseMic(true);
    f.items.setFollowing(true);
    f.targets->set(playing({"Zoom"}));
    QCOMPARE(f.filled(), (QStringList{"All Programs", "Only Zoom", "All Except Zoom"}));
    QSignalSpy changes(&f.settings, &AppSettings::changed);
    f.choose("Only Zoom");
    QVERIFY(!f.settings.useMic());
    QCOMPARE(changes.size(), 1);
  }

  void whileCaptionsSwitchNothingCanBeChosen() {
    Fixture f;
    f.items.setFollowing(true);
    f.targets->set(playing({"Zoom"}));
    f.filled(false);
    for (const QAction* action : f.menu.actions())
      QVERIFY(!action->isEnabled() || action->isSeparator());
  }
};

QTEST_MAIN(ProgramItemsTest)
#include "program_items_test.moc"
