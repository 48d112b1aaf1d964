// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/atomic_file.h"

#include "platform/foundation/file_access.h"
#include "platform/foundation/file_error.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <cerrno>
#include <fcntl.h>
#include <QDir>
#include <QFile>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace velun;

namespace {

template <class Action>
int refusalOf(Action action) {
  try {
    action();
  } catch (const FileError& error) {
    return error.code().value();
  }
  return 0;
}

}  // namespace

class AtomicFileTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<test::TestFolder>();
  }

  void writesAndReplacesFiles_data() {
    QTest::addColumn<bool>("flush");
    QTest::newRow("flushed") << true;
    QTest::newRow("not flushed") << false;
  }
  void writesAndReplacesFiles() {
    QFETCH(bool, flush);
    const QByteArray large(3'000'000, 'x');
    for (const QByteArray& bytes : {QByteArray("first"), large, QByteArray(), QByteArray("a")}) {
      writeFileAtomically(path("file"), bytes, flush);
      QCOMPARE(readWholeFile(path("file"), 10'000'000), bytes);
      QCOMPARE(folder_->names(), QStringList{"file"});
    }
  }

  void leftoverOfAKilledWriterIsReused() {
    folder_->write(".file.velun-part", QByteArray(100, 'x'));
    writeFileAtomically(path("file"), "short", false);
    QCOMPARE(readWholeFile(path("file"), 100), QByteArray("short"));
    QCOMPARE(folder_->names(), QStringList{"file"});
  }

  void newFileIsPrivateAndExistingOneKeepsItsMode() {
    writeFileAtomically(path("file"), "a", false);
    QCOMPARE(folder_->mode("file"), 0600u);
    QCOMPARE(::chmod(name("file").constData(), 0644), 0);
    writeFileAtomically(path("file"), "b", false);
    QCOMPARE(folder_->mode("file"), 0644u);
  }

  void missingFolderThrows() {
    QCOMPARE(refusalOf([this] { writeFileAtomically(path("no/file"), "a", true); }), ENOENT);
  }

  void failedReplacementLeavesNoTemporaryFile() {
    QVERIFY(QDir().mkdir(path("file")));
    QCOMPARE(refusalOf([this] { writeFileAtomically(path("file"), "a", true); }), EISDIR);
    QCOMPARE(folder_->names(), QStringList{"file"});
  }

  void linkToAFileThatDoesNotExistYetStaysALink() {
    QVERIFY(QDir().mkdir(path("dotfiles")));
    QVERIFY(QFile::link("dotfiles/target", path("link")));
    QVERIFY(QFile::link("link", path("link to the link")));
    writeFileAtomically(path("link to the link"), "a", true);
    QCOMPARE(folder_->contents("dotfiles/target"), QByteArray("a"));
    QVERIFY(QFileInfo(path("link")).isSymLink());
    QVERIFY(QFileInfo(path("link to the link")).isSymLink());
  }

  void linkIntoAMissingFolderThrows() {
    // The folder may be on a disk that is not mounted now.
    QVERIFY(QFile::link("missing/target", path("link")));
    QCOMPARE(refusalOf([this] { writeFileAtomically(path("link"), "a", true); }), ENOENT);
    QVERIFY(QFileInfo(path("link")).isSymLink());
  }

  void linksInACircleThrow() {
    QVERIFY(QFile::link("one", path("other")));
    QVERIFY(QFile::link("other", path("one")));
    QCOMPARE(refusalOf([this] { writeFileAtomically(path("one"), "a", true); }), ELOOP);
    QVERIFY(QFileInfo(path("one")).isSymLink());
  }

  void temporaryFileThatIsALinkIsNotFollowed() {
    folder_->write("victim", "kept");
    QVERIFY(QFile::link(path("victim"), path(".file.velun-part")));
    QCOMPARE(refusalOf([this] { writeFileAtomically(path("file"), "a", true); }), ELOOP);
    QCOMPARE(readWholeFile(path("victim"), 100), QByteArray("kept"));
  }

  void namesOfEveryLengthCanBeWritten_data() {
    QTest::addColumn<QString>("name");
    // 255 bytes is the longest name of common file systems; 143 that of encrypted home folders.
    for (const int bytes : {1, 80, 90, 143, 240, 241, 242, 243, 254, 255}) {
      QTest::addRow("%d Latin letters", bytes) << QString(bytes, u'a');
    }
    QTest::newRow("80 Korean syllables") << QString(80, u'한');
    QTest::newRow("85 Korean syllables") << QString(85, u'한');
    QTest::newRow("63 emoji") << QStringLiteral("😀").repeated(63) + "abc";
    QTest::newRow("with an ending") << QString(83, u'한') + ".json";
  }
  void namesOfEveryLengthCanBeWritten() {
    QFETCH(QString, name);
    // The first write creates the file, the second one replaces it.
    for (const bool flush : {true, false}) {
      const QByteArray bytes = flush ? "first" : "second";
      QCOMPARE(refusalOf([&] { writeFileAtomically(path(name), bytes, flush); }), 0);
      QCOMPARE(folder_->contents(name), bytes);
      QCOMPARE(folder_->names(), QStringList{name});
    }
  }

  void nameThatIsTooLongThrows() {
    QCOMPARE(refusalOf([this] { writeFileAtomically(path(QString(256, u'a')), "a", true); }),
             ENAMETOOLONG);
    QCOMPARE(folder_->names(), QStringList{});
  }

  void longNamesWithTheSameBeginningHaveTheirOwnTemporaryFiles() {
    const QString one = QString(254, u'a') + "1";
    const QString other = QString(254, u'a') + "2";
    const auto write = [this](const QString& name, char letter) {
      for (int i = 0; i < 100; ++i) writeFileAtomically(path(name), QByteArray(9, letter), false);
    };
    std::jthread a(write, one, 'a');
    std::jthread b(write, other, 'b');
    a.join();
    b.join();
    QCOMPARE(folder_->contents(one), QByteArray(9, 'a'));
    QCOMPARE(folder_->contents(other), QByteArray(9, 'b'));
  }

  void whatAKilledWriterLeavesIsRemoved_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("short name") << QString("file");
    QTest::newRow("longest name") << QString(85, u'한');
  }
  void whatAKilledWriterLeavesIsRemoved() {
    QFETCH(QString, name);
    folder_->write(name, "whole");
    const pid_t writer = ::fork();
    if (writer == 0) {
      // The system kills the writer in the middle of the file.
      const rlimit none{0, 0};
      const rlimit small{1000, 1000};
      ::setrlimit(RLIMIT_CORE, &none);
      ::setrlimit(RLIMIT_FSIZE, &small);
      refusalOf([&] { writeFileAtomically(path(name), QByteArray(10'000, 'x'), false); });
      ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(writer, &status, 0), writer);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(folder_->names().size(), 2);
    QCOMPARE(folder_->contents(name), QByteArray("whole"));
    removeAbandonedWrites(folder_->path());
    QCOMPARE(folder_->names(), QStringList{name});
  }

  void concurrentWritersTakeTurns() {
    // Each writes its own letter; a file with both letters would be damaged.
    const auto write = [this](char letter) {
      for (int i = 0; i < 100; ++i)
        writeFileAtomically(path("file"), QByteArray(50'000, letter), false);
    };
    std::jthread a(write, 'a');
    std::jthread b(write, 'b');
    int torn = 0;
    for (int i = 0; i < 200; ++i) {
      if (!QFileInfo::exists(path("file"))) continue;
      const QByteArray bytes = readWholeFile(path("file"), 100'000);
      torn += bytes.size() != 50'000 || bytes.count(bytes.at(0)) != 50'000 ? 1 : 0;
    }
    a.join();
    b.join();
    QCOMPARE(torn, 0);
    QCOMPARE(folder_->names(), QStringList{"file"});
  }

  void removesOnlyAbandonedTemporaryFiles() {
    folder_->write(".old.velun-part", "left");
    folder_->write(".busy.velun-part", "being written");
    folder_->write(".other.part", "someone else's");
    folder_->write("plain.velun-part", "not hidden");
    const int busy = ::open(name(".busy.velun-part").constData(), O_WRONLY | O_CLOEXEC);
    QVERIFY(busy >= 0);
    QCOMPARE(::flock(busy, LOCK_EX), 0);
    removeAbandonedWrites(folder_->path());
    ::close(busy);
    QCOMPARE(folder_->names(),
             (QStringList{".busy.velun-part", ".other.part", "plain.velun-part"}));
    removeAbandonedWrites(folder_->path());
    QCOMPARE(folder_->names(), (QStringList{".other.part", "plain.velun-part"}));
  }

  void readsOnlyRegularFilesWithinTheLimit() {
    folder_->write("file", "12345");
    QCOMPARE(readWholeFile(path("file"), 5), QByteArray("12345"));
    QCOMPARE(refusalOf([this] { readWholeFile(path("file"), 4); }), EFBIG);
    QCOMPARE(refusalOf([this] { readWholeFile(path("none"), 4); }), ENOENT);
    QCOMPARE(refusalOf([this] { readWholeFile(folder_->path(), 1 << 20); }), EISDIR);
    QCOMPARE(refusalOf([] { readWholeFile("/dev/zero", 1 << 20); }), EINVAL);
    QCOMPARE(::mkfifo(name("pipe").constData(), 0600), 0);
    QCOMPARE(refusalOf([this] { readWholeFile(path("pipe"), 1 << 20); }), EINVAL);
  }

  void readsFilesWhoseSizeTheFileSystemDoesNotTell() {
    // Their size is 0, as on some network file systems.
    const QByteArray bytes = readWholeFile("/proc/self/limits", 1 << 20);
    QVERIFY(bytes.startsWith("Limit"));
    QVERIFY(bytes.endsWith('\n'));
    QCOMPARE(refusalOf([] { readWholeFile("/proc/self/limits", 100); }), EFBIG);
  }

  void reservesThePadding() {
    folder_->write("file", "12345");
    const QByteArray bytes = readWholeFile(path("file"), 5, 64);
    QVERIFY(bytes.capacity() >= 5 + 64);
  }

  void createsPrivateFolders() {
    QVERIFY(QDir().mkdir(path("open")));
    QCOMPARE(::chmod(name("open").constData(), 0755), 0);
    makePrivateFolder(path("open/a/b"));
    makePrivateFolder(path("open/a/b"));
    QCOMPARE(folder_->mode("open"), 0755u);
    QCOMPARE(folder_->mode("open/a"), 0700u);
    QCOMPARE(folder_->mode("open/a/b"), 0700u);
    folder_->write("file", "x");
    QCOMPARE(refusalOf([this] { makePrivateFolder(path("file")); }), ENOTDIR);
    QCOMPARE(refusalOf([this] { makePrivateFolder(path("file/below")); }), ENOTDIR);
  }

  void readsTheCreationTime() {
    folder_->write("file", "x");
    QVERIFY(!creationTime(path("none")));
    const std::optional<Instant> created = creationTime(path("file"));
    // All common Linux file systems record it.
    QVERIFY(created);
    const auto age = std::chrono::system_clock::now() - *created;
    QVERIFY(age > std::chrono::seconds(-2) && age < std::chrono::seconds(60));
  }

 private:
  QString path(const QString& name) const { return folder_->path(name); }
  QByteArray name(const QString& name) const { return QFile::encodeName(path(name)); }

  std::unique_ptr<test::TestFolder> folder_;
};

QTEST_GUILESS_MAIN(AtomicFileTest)
#include "atomic_file_test.moc"
