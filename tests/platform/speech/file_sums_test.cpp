// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/file_sums.h"

#include "support/failing_calls.h"
#include "support/suite.h"

#include <cerrno>
#include <QDir>
#include <QTemporaryDir>
#include <sys/syscall.h>

using namespace velun;
using namespace velun::test;

/// The check of a model's files before they are used.
class FileSumsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    dir_ = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(dir_->path()).mkdir("am"));
    write("am/final.mdl", "abc");
    write("empty", "");
  }

  void listedFilesAreAccepted() { QCOMPARE(damaged(kSums), QString()); }

  void otherFilesAreIgnored() {
    write("other", "x");
    QCOMPARE(damaged(kSums), QString());
  }

  void changedFileIsNamed_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("changed") << QByteArray("abd");
    QTest::newRow("cut") << QByteArray("ab");
    QTest::newRow("longer") << QByteArray("abcd");
    QTest::newRow("empty") << QByteArray();
  }
  void changedFileIsNamed() {
    QFETCH(QByteArray, content);
    write("am/final.mdl", content);
    QCOMPARE(damaged(kSums), QString("am/final.mdl"));
  }

  void missingFileIsNamed() {
    QVERIFY(QFile::remove(dir_->filePath("am/final.mdl")));
    QCOMPARE(damaged(kSums), QString("am/final.mdl"));
    QVERIFY(QDir(dir_->path()).mkdir("am/final.mdl"));
    QCOMPARE(damaged(kSums), QString("am/final.mdl"));
  }

  void unreadableFileIsToldWithTheReason_data() {
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("code");
    QTest::newRow("no permission") << int(SYS_openat) << EACCES;
    QTest::newRow("too many open files") << int(SYS_openat) << EMFILE;
    QTest::newRow("broken disk") << int(SYS_read) << EIO;
  }
  void unreadableFileIsToldWithTheReason() {
    QFETCH(int, call);
    QFETCH(int, code);
    for (const QByteArray& sums : {kSums, QByteArray()}) {
      if (sums.isEmpty() && call == SYS_read) continue;  // an empty list is not read
      write("SHA256SUMS", kSums);
      const QString name = sums.isEmpty() ? "SHA256SUMS" : "am/final.mdl";
      QVERIFY(runWithFailingCall(call, code, [&] {
        try {
          checkFiles(dir_->path(), sums);
        } catch (const UnreadableFile& file) {
          if (file.name() == name && file.code() == code) return;
        } catch (const DamagedFile&) {
          // The wrong report.
        }
        ::_exit(1);
      }));
    }
  }

  void invalidListIsNamed_data() {
    QTest::addColumn<QByteArray>("sums");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("blank") << QByteArray("\n");
    QTest::newRow("cut in a sum") << kSums.left(30);
    QTest::newRow("cut before a name") << kSums.left(66);
    QTest::newRow("other text") << QByteArray("hello\n");
  }
  void invalidListIsNamed() {
    QFETCH(QByteArray, sums);
    QCOMPARE(damaged(sums), QString("SHA256SUMS"));
  }

 private:
  void write(const QString& name, const QByteArray& content) {
    QFile file(dir_->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
  }

  /// The damaged file, empty for none.
  QString damaged(const QByteArray& sums) const {
    try {
      checkFiles(dir_->path(), sums);
    } catch (const DamagedFile& file) {
      return file.name();
    }
    return {};
  }

  static inline const QByteArray kSums =
      "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad  am/final.mdl\n"
      "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855  empty\n";
  std::unique_ptr<QTemporaryDir> dir_;
};

QTEST_GUILESS_MAIN(FileSumsTest)
#include "file_sums_test.moc"
