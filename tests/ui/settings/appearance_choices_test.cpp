// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/appearance_choices.h"

#include "support/suite.h"

using namespace velun;

class AppearanceChoicesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void fontFamiliesAreOfferedOnceWithoutTheirMakers() {
    QStringList values;
    for (const Choice& choice :
         familyChoices({"DejaVu Sans", "Nimbus Roman [UKWN]", "Nimbus Roman [urw]"})) {
      values << choice.value.toString();
    }
    QCOMPARE(values, (QStringList{"", "DejaVu Sans", "Nimbus Roman"}));
  }

  void valueThatIsNotOfferedIsShownItself() {
    const Choice shown = choiceOf(familyChoices({"DejaVu Sans"}), "Removed Font");
    QCOMPARE(shown.value.toString(), QString("Removed Font"));
    QCOMPARE(shown.label, QString("Removed Font"));
  }
};

QTEST_MAIN(AppearanceChoicesTest)
#include "appearance_choices_test.moc"
