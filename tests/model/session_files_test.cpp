// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_files.h"

#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "support/saved_sessions.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <QFile>
#include <unistd.h>

using namespace velun;

class SessionFilesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void saysThatAFileIsNotOnThisComputer() {
    QCOMPARE(remoteFileText(QUrl("sftp://example.org/talks/first.json")),
             QString("“sftp://example.org/talks/first.json” is not a file on this computer."));
  }

  void reportsAMissingFile() {
    QCOMPARE(failure("none.json"), QString("“none.json” doesn’t exist."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(failure("none.json"), QString("“none.json” 항목이 없습니다."));
  }

  void readsOtherExtensionsAsJson() {
    for (const char* name : {"talk.txt", "talk"}) {
      folder_.write(name, encodeSession(test::sampleSession()));
      QVERIFY(read(name) == test::sampleSession());
    }
    folder_.write("old.MD", "# 자막 세션 — \n`1` a\n");
    QCOMPARE(read("old.MD").lines.size(), 1u);
  }

  void rejectsAHugeFileWithoutReadingIt() {
    folder_.write("huge.json", "");
    const QByteArray path = QFile::encodeName(folder_.path("huge.json"));
    QCOMPARE(::truncate(path.constData(), kMaxSessionFileSize + 1), 0);
    QCOMPARE(failure("huge.json"),
             QString("“huge.json” is larger than 256 MB, more than a session can be."));
  }

  void failedReadDoesNotChangeTheFile() {
    folder_.write("bad.json", "{");
    QVERIFY(!failure("bad.json").isEmpty());
    QCOMPARE(folder_.contents("bad.json"), QByteArray("{"));
  }

 private:
  CaptionSession read(const QString& name) const {
    return test::readSession(QUrl::fromLocalFile(folder_.path(name)));
  }

  /// Why the file cannot be read; empty if it can.
  QString failure(const QString& name) const {
    try {
      read(name);
    } catch (...) {
      return readingErrorText(std::current_exception(), folder_.path(name));
    }
    return {};
  }

  const test::TestFolder folder_;
};

QTEST_GUILESS_MAIN(SessionFilesTest)
#include "session_files_test.moc"
