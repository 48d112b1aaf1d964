// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/window_arguments.h"

#include "language/localization.h"
#include "support/suite.h"

using namespace velun;

namespace {

QString answer(const QString& argument) {
  try {
    parseWindowArguments({argument});
  } catch (const HelpRequested& help) {
    return help.text;
  }
  return {};
}

}  // namespace

class WindowArgumentsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void filesAreReturnedAsTheyAre() {
    QCOMPARE(parseWindowArguments({}), QStringList());
    QCOMPARE(parseWindowArguments({"a b.json", "file:///talk.mp3"}),
             QStringList({"a b.json", "file:///talk.mp3"}));
    QCOMPARE(parseWindowArguments({"--", "--help"}), QStringList("--help"));
  }

  void helpAndVersionAreTexts() {
    QVERIFY(answer("--help").startsWith("Usage: velun [options] [file...]\n"));
    QVERIFY(answer("-h").contains("--version"));
    QCoreApplication::setApplicationVersion("1.2.3");
    QCOMPARE(answer("--version"), QString("Velun 1.2.3\n"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(answer("--help").startsWith("사용법: velun"));
  }

  void otherOptionsAreRefused() {
    QVERIFY_EXCEPTION_THROWN(parseWindowArguments({"--nonsense"}), UsageError);
    QVERIFY_EXCEPTION_THROWN(parseWindowArguments({"talk.json", "-x"}), UsageError);
  }
};

QTEST_GUILESS_MAIN(WindowArgumentsTest)
#include "window_arguments_test.moc"
