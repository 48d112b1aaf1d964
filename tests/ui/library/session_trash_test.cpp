// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_trash.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "support/suite.h"

#include <QTemporaryDir>

using namespace velun;

class SessionTrashTest final : public test::Suite {
  Q_OBJECT

 private:
  static QString failureOf(const QUrl& url) {
    try {
      moveSessionToTrash(url);
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return {};
  }

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void missingFileIsReportedAsMissing() {
    const QTemporaryDir folder;
    const QUrl gone = QUrl::fromLocalFile(folder.filePath("gone.json"));
    QCOMPARE(failureOf(gone), QString("“gone.json” doesn’t exist."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(failureOf(gone), QString("“gone.json” 항목이 없습니다."));
  }
};

QTEST_MAIN(SessionTrashTest)
#include "session_trash_test.moc"
