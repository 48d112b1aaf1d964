// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/set_aside.h"

#include "support/failing_calls.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <cerrno>
#include <sys/syscall.h>

using namespace velun;

class SetAsideTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<test::TestFolder>();
  }

  void neverReplacesAnything() {
    const QStringList contents = {"one", "two", "three"};
    for (const QString& bytes : contents) {
      folder_->write("file", bytes.toUtf8());
      QVERIFY(setAside(folder_->path("file"), ".old"));
    }
    QCOMPARE(folder_->names(), (QStringList{"file.old", "file.old-2", "file.old-3"}));
    QCOMPARE(folder_->contents("file.old"), QByteArray("one"));
    QCOMPARE(folder_->contents("file.old-2"), QByteArray("two"));
    QCOMPARE(folder_->contents("file.old-3"), QByteArray("three"));
  }

  void passesFoldersAndBrokenLinks() {
    folder_->write("file", "bytes");
    QVERIFY(QDir().mkdir(folder_->path("file.old")));
    QVERIFY(QFile::link("nowhere", folder_->path("file.old-2")));
    QVERIFY(setAside(folder_->path("file"), ".old"));
    QCOMPARE(folder_->contents("file.old-3"), QByteArray("bytes"));
    QVERIFY(QFileInfo(folder_->path("file.old-2")).isSymLink());
  }

  void renamesFolders() {
    for (int i = 0; i < 2; ++i) {
      QVERIFY(QDir().mkdir(folder_->path("thing")));
      QVERIFY(setAside(folder_->path("thing"), ".old"));
    }
    QCOMPARE(folder_->names(), (QStringList{"thing.old", "thing.old-2"}));
  }

  void worksWithoutSupportOfTheFileSystem() {
    folder_->write("file.old", "one");
    folder_->write("file", "two");
    QVERIFY(test::runWithFailingCall(SYS_renameat2, EINVAL, [this] {
      if (!setAside(folder_->path("file"), ".old")) ::abort();
    }));
    QCOMPARE(folder_->contents("file.old"), QByteArray("one"));
    QCOMPARE(folder_->contents("file.old-2"), QByteArray("two"));
  }

  void reportsFailure() {
    QVERIFY(!setAside(folder_->path("missing"), ".old"));
    QVERIFY(folder_->names().isEmpty());
  }

 private:
  std::unique_ptr<test::TestFolder> folder_;
};

QTEST_GUILESS_MAIN(SetAsideTest)
#include "set_aside_test.moc"
