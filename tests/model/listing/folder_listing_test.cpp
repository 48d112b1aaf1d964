// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "support/no_more_threads.h"
#include "support/saved_sessions.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "support/test_folder.h"
#include "support/time_zone.h"

#include <QDir>
#include <QFile>
#include <sys/stat.h>

using namespace velun;

/// Which files of a folder are listed, and in which order.
class FolderListingTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    test::setTimeZone("Asia/Seoul");
    folder_ = std::make_unique<test::TestFolder>();
  }
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void missingFolderIsAnEmptyListing() {
    const SessionListing listing = listingOf(path("none"));
    QVERIFY(listing.sessions.empty() && !listing.failure);
    QCOMPARE(listing.unreadableCount, 0);
    QVERIFY(!QFileInfo::exists(path("none")));
  }

  void reportsAFolderThatCannotBeListed() {
    folder_->write("file", "x");
    QVERIFY(listingOf(path("file")).failure);
  }

  void folderThatCannotBeReachedIsNotAnEmptyListing() {
    QVERIFY(QFile::link("circle", path("circle")));
    for (const char* name : {"circle", "circle/Sessions"}) {
      QVERIFY(listingOf(path(name)).failure);
    }
  }

  void listsOnlyVisibleSessionFiles() {
    const QByteArray bytes = encodeSession(test::sampleSession());
    for (const char* name : {"a.json", "x.JSON", ".y.json", "notes.txt", "json", "z.json.bak"}) {
      folder_->write(QString::fromLatin1(name), bytes);
    }
    folder_->write("m.Md", "# 자막 세션 — \n`1` a\n");
    QVERIFY(QDir().mkpath(path("folder/below")));
    QCOMPARE(listing().unreadableCount, 0);
    QStringList names = listedNames();
    names.sort();
    QCOMPARE(names, (QStringList{"a.json", "m.Md", "x.JSON"}));
  }

  void countsUnreadableFiles() {
    QByteArray newer = encodeSession(test::sampleSession());
    newer.replace("\"schemaVersion\" : 1", "\"schemaVersion\" : 2");
    folder_->write("newer.json", newer);
    folder_->write("broken.json", "{");
    folder_->write("empty.json", "");
    folder_->write("notes.md", "# Notes\n");
    folder_->write("binary.md", "# 자막 세션 — \n\xFF");
    QVERIFY(QDir(folder_->path()).mkdir("folder.json"));
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe.json")).constData(), 0600), 0);
    QVERIFY(QFile::link("/dev/zero", path("endless.json")));
    QVERIFY(QFile::link(path("nowhere"), path("dangling.json")));
    folder_->write("good.json", encodeSession(test::sampleSession()));
    QCOMPARE(listedNames(), QStringList{"good.json"});
    QCOMPARE(listing().unreadableCount, 9);
  }

  void listsNewestFirst() {
    for (const int hour : {3, 9, 1, 7}) {
      CaptionSession session = test::sampleSession();
      session.startedAt = test::utc(2025, 3, 1, hour, 0, 0);
      folder_->write(QStringLiteral("%1.json").arg(hour), encodeSession(session));
    }
    QCOMPARE(listedNames(), (QStringList{"9.json", "7.json", "3.json", "1.json"}));
  }

  void equalStartTimesKeepTheOrderOfTheNames() {
    QStringList expected;
    for (int i = 0; i < 40; ++i) {
      const QString name = QStringLiteral("%1.json").arg(i, 2, 10, QLatin1Char('0'));
      folder_->write(name, encodeSession(test::sampleSession()));
      expected += name;
    }
    QCOMPARE(listedNames(), expected);
  }

  void oneThreadReadsAllIfThereAreNoMoreThreads() {
    for (int i = 0; i < 5; ++i) {
      folder_->write(QStringLiteral("%1.json").arg(i), encodeSession(test::sampleSession()));
    }
    const test::NoMoreThreads few;
    QCOMPARE(listing().sessions.size(), 5u);
  }

  void listsLegacyTranscriptsWithALocalizedTitle() {
    folder_->write("2024-11-02_20-15-00.md", "# 자막 세션 — \n`1` a\n");
    Localization::shared().setLanguage(AppLanguage::korean);
    const SessionListing listed = listing();
    QCOMPARE(listed.sessions.size(), 1u);
    QCOMPARE(listed.sessions[0]->summary.title, QString("자막 세션"));
    QVERIFY(listed.sessions[0]->summary.startedAt == test::utc(2024, 11, 2, 11, 15, 0));
  }

  void listsFileNamesInAnyScript() {
    folder_->write("회의 100%.json", encodeSession(test::sampleSession()));
    const SessionListing listed = listing();
    QCOMPARE(listed.sessions.size(), 1u);
    QCOMPARE(listed.sessions[0]->url.toLocalFile(), path("회의 100%.json"));
    QVERIFY(test::readSession(listed.sessions[0]->url) == test::sampleSession());
  }

 private:
  QString path(const QString& name) const { return folder_->path(name); }
  static SessionListing listingOf(const QString& folder) {
    return test::listingOf({QUrl::fromLocalFile(folder)});
  }
  SessionListing listing() const { return listingOf(folder_->path()); }
  QStringList listedNames() const {
    QStringList names;
    for (const auto& entry : listing().sessions) names += entry->url.fileName();
    return names;
  }

  std::unique_ptr<test::TestFolder> folder_;
};

QTEST_GUILESS_MAIN(FolderListingTest)
#include "folder_listing_test.moc"
