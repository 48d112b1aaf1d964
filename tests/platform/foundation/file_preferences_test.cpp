// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/file_preferences.h"

#include "support/failing_calls.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <cerrno>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <sys/syscall.h>

using namespace velun;

class FilePreferencesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<test::TestFolder>();
  }

  void userFileIsInTheConfigurationFolder() {
    QCOMPARE(FilePreferences::userPath(),
             QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                 "/app.velun.Velun/preferences.json");
  }

  void missingValueIsNone() {
    FilePreferences preferences(path());
    QVERIFY(!preferences.value("keepOnTop"));
    QVERIFY(!QFileInfo::exists(path()));  // reading creates nothing
    preferences.set("keepOnTop", false);
    QCOMPARE(preferences.get<bool>("keepOnTop"), std::optional(false));
  }

  void valuesKeepTheirTypes() {
    {
      FilePreferences preferences(path());
      preferences.set("yes", true);
      preferences.set("no", false);
      preferences.set("size", 16.0);
      preferences.set("third", 1.0 / 3);
      preferences.set("text", QString("한국어 😀 \"quoted\"\n"));
      preferences.set("number as text", QString("16"));
      preferences.set("empty", QString(""));
    }
    const FilePreferences preferences(path());
    QCOMPARE(preferences.get<bool>("yes"), std::optional(true));
    QCOMPARE(preferences.get<bool>("no"), std::optional(false));
    QCOMPARE(preferences.get<double>("size"), std::optional(16.0));
    QCOMPARE(preferences.get<double>("third"), std::optional(1.0 / 3));
    QCOMPARE(preferences.get<QString>("text"), std::optional<QString>("한국어 😀 \"quoted\"\n"));
    QCOMPARE(preferences.get<QString>("number as text"), std::optional<QString>("16"));
    QCOMPARE(preferences.get<QString>("empty"), std::optional<QString>(""));
  }

  void valueOfAnotherTypeIsNone() {
    writeFile(
        "{\"keepOnTop\": \"no\", \"fontSize\": true, \"translate\": 1, \"list\": [], \"none\": "
        "null}");
    const FilePreferences preferences(path());
    QVERIFY(!preferences.get<bool>("keepOnTop"));
    QVERIFY(!preferences.get<double>("fontSize"));
    QVERIFY(!preferences.get<bool>("translate"));
    QVERIFY(!preferences.value("list"));
    QVERIFY(!preferences.value("none"));
  }

  void readsIntegers() {
    writeFile("{\"fontSize\": 20}");
    QCOMPARE(FilePreferences(path()).get<double>("fontSize"), std::optional(20.0));
  }

  void setWritesAtOnce() {
    FilePreferences preferences(path());
    preferences.set("a", 1.0);
    QCOMPARE(FilePreferences(path()).get<double>("a"), std::optional(1.0));
    preferences.set("a", 2.0);
    QCOMPARE(FilePreferences(path()).get<double>("a"), std::optional(2.0));
    // Even if the value does not change.
    QVERIFY(QFile::remove(path()));
    preferences.set("a", 2.0);
    QCOMPARE(FilePreferences(path()).get<double>("a"), std::optional(2.0));
  }

  void folderAndFileArePrivate() {
    const QString deep = folder_->path("config/app.velun.Velun/preferences.json");
    FilePreferences preferences(deep);
    preferences.set("a", true);
    QCOMPARE(folder_->mode("config/app.velun.Velun/preferences.json"), 0600u);
    QCOMPARE(folder_->mode("config"), 0700u);
    QCOMPARE(folder_->mode("config/app.velun.Velun"), 0700u);
  }

  void damagedFileIsRenamed_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("cut short") << QByteArray("{\"fontSize\": 20, \"keepOnTop");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("a list") << QByteArray("[1]");
    QTest::newRow("not UTF-8") << QByteArray("{\"a\": \"\xFF\"}");
    QTest::newRow("deep") << QByteArray(100'000, '[');
    QTest::newRow("far too large") << "{\"a\": \"" + QByteArray(2 << 20, 'x') + "\"}";
  }
  void damagedFileIsRenamed() {
    QFETCH(QByteArray, bytes);
    writeFile(bytes);
    FilePreferences preferences(path());
    QVERIFY(!preferences.value("fontSize"));
    QVERIFY(!QFileInfo::exists(path()));
    QCOMPARE(folder_->contents("preferences.json.damaged"), bytes);
    preferences.set("fontSize", 18.0);
    QCOMPARE(FilePreferences(path()).get<double>("fontSize"), std::optional(18.0));
    QCOMPARE(folder_->contents("preferences.json.damaged"), bytes);
  }

  void everyDamagedFileIsKept() {
    const QStringList damaged = {"first", "second", "third"};
    for (const QString& bytes : damaged) {
      writeFile(bytes.toUtf8());
      FilePreferences(path()).set("a", true);
    }
    // One that is damaged while the program runs.
    FilePreferences preferences(path());
    writeFile("fourth");
    preferences.set("b", true);
    QCOMPARE(
        folder_->names(),
        (QStringList{"preferences.json", "preferences.json.damaged", "preferences.json.damaged-2",
                     "preferences.json.damaged-3", "preferences.json.damaged-4"}));
    QCOMPARE(folder_->contents("preferences.json.damaged"), QByteArray("first"));
    QCOMPARE(folder_->contents("preferences.json.damaged-2"), QByteArray("second"));
    QCOMPARE(folder_->contents("preferences.json.damaged-3"), QByteArray("third"));
    QCOMPARE(folder_->contents("preferences.json.damaged-4"), QByteArray("fourth"));
  }

  void fileThatCannotBeReadIsNotDamaged_data() {
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("code");
    QTest::newRow("failing disk") << int(SYS_read) << EIO;
    QTest::newRow("network file system gone") << int(SYS_read) << ESTALE;
    QTest::newRow("no memory") << int(SYS_read) << ENOMEM;
    QTest::newRow("no permission") << int(SYS_openat) << EACCES;
    QTest::newRow("no descriptors in the process") << int(SYS_openat) << EMFILE;
    QTest::newRow("no descriptors in the system") << int(SYS_openat) << ENFILE;
    QTest::newRow("failing disk at opening") << int(SYS_openat) << EIO;
  }
  void fileThatCannotBeReadIsNotDamaged() {
    QFETCH(int, call);
    QFETCH(int, code);
    const QByteArray bytes = R"({"fontSize": 20, "keepOnTop": false})";
    writeFile(bytes);
    QVERIFY(test::runWithFailingCall(call, code, [this] {
      FilePreferences preferences(path());
      preferences.set("language", QString("ko"));
      // The choice is valid until the end of the program.
      if (preferences.get<QString>("language") != QString("ko")) ::_exit(1);
    }));
    QCOMPARE(folder_->contents("preferences.json"), bytes);
    QCOMPARE(folder_->names(), QStringList{"preferences.json"});
  }

  void choicesAreStoredWhenTheFileCanBeReadAgain() {
    writeFile(R"({"fontSize": 20, "keepOnTop": false})");
    std::optional<FilePreferences> preferences;
    {
      const test::NoMoreDescriptors guard;
      preferences.emplace(path());
      preferences->set("keepOnTop", true);
      QVERIFY(!preferences->value("fontSize"));
    }
    preferences->set("language", QString("ko"));
    QCOMPARE(preferences->get<double>("fontSize"), std::optional(20.0));
    QCOMPARE(preferences->get<bool>("keepOnTop"), std::optional(true));
    const FilePreferences again(path());
    QCOMPARE(again.get<double>("fontSize"), std::optional(20.0));
    QCOMPARE(again.get<bool>("keepOnTop"), std::optional(true));
    QCOMPARE(again.get<QString>("language"), std::optional<QString>("ko"));
  }

  void lastChoiceIsStoredAtTheEnd() {
    writeFile(R"({"fontSize": 20})");
    {
      FilePreferences preferences(path());
      const test::NoMoreDescriptors guard;
      preferences.set("keepOnTop", false);
    }
    const FilePreferences again(path());
    QCOMPARE(again.get<double>("fontSize"), std::optional(20.0));
    QCOMPARE(again.get<bool>("keepOnTop"), std::optional(false));
  }

  void failedWriteLeavesTheFileAsItWas_data() {
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("code");
    QTest::newRow("disk full") << int(SYS_write) << ENOSPC;
    QTest::newRow("failing disk") << int(SYS_write) << EIO;
    QTest::newRow("failing disk, noticed late") << int(SYS_fdatasync) << EIO;
    QTest::newRow("no permission to rename") << int(SYS_rename) << EACCES;
  }
  void failedWriteLeavesTheFileAsItWas() {
    QFETCH(int, call);
    QFETCH(int, code);
    const QByteArray bytes = R"({"fontSize": 20})";
    writeFile(bytes);
    QVERIFY(test::runWithFailingCall(call, code,
                                     [this] { FilePreferences(path()).set("fontSize", 30.0); }));
    QCOMPARE(folder_->contents("preferences.json"), bytes);
    QCOMPARE(folder_->names(), QStringList{"preferences.json"});
  }

  void damagedFileThatCannotBeRenamedIsNotReplaced() {
    writeFile("damaged");
    QVERIFY(test::runWithFailingCall(SYS_renameat2, EACCES,
                                     [this] { FilePreferences(path()).set("fontSize", 30.0); }));
    QCOMPARE(folder_->contents("preferences.json"), QByteArray("damaged"));
  }

  void fileDamagedWhileRunningLosesNoValue() {
    FilePreferences preferences(path());
    preferences.set("a", 1.0);
    writeFile("{");
    preferences.set("b", 2.0);
    const FilePreferences again(path());
    QCOMPARE(again.get<double>("a"), std::optional(1.0));
    QCOMPARE(again.get<double>("b"), std::optional(2.0));
  }

  void folderInPlaceOfTheFileIsRenamed() {
    QVERIFY(QDir().mkpath(path()));
    FilePreferences preferences(path());
    preferences.set("a", true);
    QCOMPARE(FilePreferences(path()).get<bool>("a"), std::optional(true));
    QVERIFY(QFileInfo(path() + ".damaged").isDir());
  }

  void twoProgramsKeepEachOthersValues() {
    FilePreferences one(path());
    FilePreferences other(path());
    one.set("a", 1.0);
    other.set("b", 2.0);
    one.set("c", 3.0);
    const FilePreferences again(path());
    QCOMPARE(again.get<double>("a"), std::optional(1.0));
    QCOMPARE(again.get<double>("b"), std::optional(2.0));
    QCOMPARE(again.get<double>("c"), std::optional(3.0));
    // Values of the other program are read at the next start.
    QVERIFY(!one.value("b"));
  }

  void unknownTypesAreKept() {
    writeFile("{\"list\": [1, 2], \"object\": {\"a\": null}}");
    FilePreferences preferences(path());
    preferences.set("a", true);
    const QByteArray bytes = folder_->contents("preferences.json").simplified();
    QVERIFY(bytes.contains("\"list\": [ 1, 2 ]"));
    QVERIFY(bytes.contains("\"object\": { \"a\": null }"));
  }

  void failedWriteIsRetriedByTheNextSet() {
    // There is a file in place of the folder.
    const QString blocked = folder_->path("blocked");
    QFile file(blocked);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    FilePreferences preferences(blocked + "/preferences.json");
    preferences.set("a", 1.0);
    QCOMPARE(preferences.get<double>("a"), std::optional(1.0));
    QVERIFY(QFile::remove(blocked));
    preferences.set("b", 2.0);
    const FilePreferences again(blocked + "/preferences.json");
    QCOMPARE(again.get<double>("a"), std::optional(1.0));
    QCOMPARE(again.get<double>("b"), std::optional(2.0));
  }

  void linkToTheFileStaysALink() {
    const QString target = folder_->path("dotfiles.json");
    QFile file(target);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("{\"a\": true}");
    file.close();
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    QVERIFY(QFile::link(target, path()));
    FilePreferences preferences(path());
    preferences.set("b", true);
    QVERIFY(QFileInfo(path()).isSymLink());
    QCOMPARE(FilePreferences(target).get<bool>("b"), std::optional(true));
    QCOMPARE(folder_->mode("dotfiles.json"), 0640u);
  }

  void temporaryFilesAreRemoved() {
    FilePreferences preferences(path());
    for (int i = 0; i < 10; ++i) preferences.set("a", double(i));
    QCOMPARE(folder_->names(), QStringList{"preferences.json"});
  }

 private:
  QString path() const { return folder_->path("preferences.json"); }
  void writeFile(const QByteArray& bytes) const { folder_->write("preferences.json", bytes); }

  std::unique_ptr<test::TestFolder> folder_;
};

QTEST_GUILESS_MAIN(FilePreferencesTest)
#include "file_preferences_test.moc"
