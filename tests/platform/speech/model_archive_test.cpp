// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/model_archive.h"

#include "platform/models/packed_bytes.h"
#include "platform/speech/helper/file_sums.h"
#include "support/suite.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <stdexcept>

using namespace velun;
using namespace velun::test;

class ModelArchiveTest final : public test::Suite {
  Q_OBJECT

  std::unique_ptr<QTemporaryDir> dir_;

  QString put(const QByteArray& bytes) const {
    const QString path = dir_->filePath("model.zip");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) qFatal("no file");
    file.write(bytes);
    return path;
  }

  static QByteArray read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
  }

  QString refusalOf(const QByteArray& bytes) const {
    const QString path = put(bytes);
    try {
      const ModelArchive archive(path, sha256(bytes));
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "accepted";
  }

  QStringList left() const {
    return QDir(dir_->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    dir_ = std::make_unique<QTemporaryDir>();
  }

  void unpacksFolders() {
    const std::vector<ArchiveEntry> entries = {{"small/am/final.mdl", "acoustic", {}},
                                               {"small/graph/phones/word_boundary.int", "1", {}},
                                               {"small/README", "read me", {}}};
    for (const QByteArray& bytes : {zipped(entries), tarBzip2(entries)}) {
      const QString path = put(bytes);
      {
        const ModelArchive archive(path, sha256(bytes));
        QVERIFY(archive.folder().endsWith("/small"));
        QCOMPARE(read(archive.folder() + "/am/final.mdl"), QByteArray("acoustic"));
        QCOMPARE(read(archive.folder() + "/graph/phones/word_boundary.int"), QByteArray("1"));
      }
      QCOMPARE(left(), QStringList("model.zip"));
    }
  }

  void filesMayLieOutsideAFolder() {
    const QByteArray bytes = zipped({{"final.mdl", "acoustic", {}}, {"conf/a.conf", "", {}}});
    const ModelArchive archive(put(bytes), sha256(bytes));
    QCOMPARE(read(archive.folder() + "/final.mdl"), QByteArray("acoustic"));
  }

  void changedArchiveIsDamaged() {
    const QByteArray bytes = zipped({{"small/final.mdl", "acoustic", {}}});
    const QString path = put(bytes + "x");
    QVERIFY_EXCEPTION_THROWN(ModelArchive(path, sha256(bytes)), DamagedFile);
    QCOMPARE(left(), QStringList("model.zip"));
  }

  void refusesBadArchives_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    const ArchiveEntry good = {"small/final.mdl", "acoustic", {}};
    const QString outside = "points outside its folder";
    QTest::newRow("parent") << zipped({good, {"../evil", "x", {}}}) << outside;
    QTest::newRow("hidden parent") << zipped({good, {"small/../../evil", "x", {}}}) << outside;
    QTest::newRow("absolute") << zipped({good, {"/tmp/evil", "x", {}}}) << outside;
    QTest::newRow("parent in tar") << tarBzip2({good, {"../evil", "x", {}}}) << outside;
    QTest::newRow("link") << tarBzip2({good, {"small/link", "", "/etc/passwd"}})
                          << "has something that is no file";
    QTest::newRow("file twice") << zipped({good, good}) << "cannot be unpacked";
    QTest::newRow("grows a hundred times")
        << zipped({good, {"small/zeros", QByteArray(20'000'000, '\0'), {}}})
        << "is too large when unpacked";
    std::vector<ArchiveEntry> many(1001, good);
    for (std::size_t i = 0; i < many.size(); ++i) many[i].path = QString("small/%1").arg(i);
    QTest::newRow("too many files") << tarBzip2(many) << "has too many files";
    QTest::newRow("no archive") << QByteArray("<html>not found</html>") << "cannot be read";
    QTest::newRow("cut off") << zipped({{"small/a", noise(100'000, 1), {}}}).left(50'000)
                             << "is damaged";
  }
  void refusesBadArchives() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const QString refusal = refusalOf(bytes);
    QVERIFY2(refusal.contains(reason), qPrintable(refusal));
    QCOMPARE(left(), QStringList("model.zip"));
    QVERIFY(!QFile::exists(dir_->filePath("../evil")));
  }

  void restsOfEndedProcessesAreRemoved() {
    const QByteArray bytes = zipped({{"small/final.mdl", "acoustic", {}}});
    const QString path = put(bytes);
    const QString living = QString("unpacked-%1-abc").arg(QCoreApplication::applicationPid());
    // Above the largest process id of Linux.
    QVERIFY(QDir(dir_->path()).mkpath("unpacked-99999999-abc/small"));
    QVERIFY(QDir(dir_->path()).mkpath(living));
    { const ModelArchive archive(path, sha256(bytes)); }
    QCOMPARE(left(), QStringList({"model.zip", living}));
  }
};

QTEST_GUILESS_MAIN(ModelArchiveTest)
#include "model_archive_test.moc"
