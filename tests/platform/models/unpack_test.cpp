// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/unpack.h"

#include "platform/foundation/failure.h"
#include "platform/models/packed_bytes.h"
#include "support/suite.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;

class UnpackTest final : public test::Suite {
  Q_OBJECT

  QTemporaryDir dir_;
  QString packed_ = dir_.filePath("packed");
  QString folder_;
  const QByteArray text_ = noise(700'000, 1) + QByteArray(500'000, 'x');

  void put(const QByteArray& bytes) {
    QFile file(packed_);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }

  QByteArray read(const QString& name) const {
    QFile file(QDir(folder_).filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
  }

  void run(ModelPacking packing, const QStringList& names) {
    ModelDownload download;
    download.packing = packing;
    for (const QString& name : names) download.files.push_back({name, 0, {}});
    unpack(download, packed_, folder_, std::stop_token());
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    static int number = 0;
    folder_ = dir_.filePath(QString("out%1/inside").arg(++number));
    QVERIFY(QDir().mkpath(folder_));
  }

  void unpacksGzip() {
    put(gzipped(text_));
    run(ModelPacking::gzip, {"model.bin"});
    QCOMPARE(read("model.bin"), text_);
  }

  void unpacksZstd() {
    put(zstdCompressed(text_));
    run(ModelPacking::zstd, {"model.bin"});
    QCOMPARE(read("model.bin"), text_);
  }

  void unpacksOnlyNamedEntries() {
    put(tarBzip2({{"m/README.md", "hello", {}},
                  {"m/encoder.onnx", text_, {}},
                  {"m/test_wavs/0.wav", "sound", {}},
                  {"m/tokens.txt", "a 0", {}}}));
    run(ModelPacking::archive, {"encoder.onnx", "tokens.txt"});
    QCOMPARE(read("encoder.onnx"), text_);
    QCOMPARE(read("tokens.txt"), QByteArray("a 0"));
    QCOMPARE(QDir(folder_).entryList(QDir::Files).size(), 2);
  }

  void badDownloadsLeaveNoFiles_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<ModelPacking>("packing");
    const QByteArray gz = gzipped(text_);
    QTest::newRow("gzip cut short") << gz.left(gz.size() / 2) << ModelPacking::gzip;
    QTest::newRow("not gzip at all") << text_ << ModelPacking::gzip;
    QTest::newRow("empty") << QByteArray() << ModelPacking::gzip;
    QTest::newRow("not zstd at all") << gz.mid(3) << ModelPacking::zstd;
    const QByteArray tar = tarBzip2({{"model.bin", text_, {}}});
    QTest::newRow("archive cut short") << tar.left(tar.size() - 1000) << ModelPacking::archive;
    QTest::newRow("not an archive") << text_ << ModelPacking::archive;
    QTest::newRow("the file is not in it")
        << tarBzip2({{"other.bin", text_, {}}}) << ModelPacking::archive;
    QTest::newRow("the file is in it twice")
        << tarBzip2({{"model.bin", text_, {}}, {"b/model.bin", "x", {}}}) << ModelPacking::archive;
    QTest::newRow("a link instead of the file")
        << tarBzip2({{"model.bin", {}, "/etc/passwd"}}) << ModelPacking::archive;
    QTest::newRow("an entry above the folder")
        << tarBzip2({{"model.bin", text_, {}}, {"../evil", "x", {}}}) << ModelPacking::archive;
    QTest::newRow("an entry above the folder by a detour")
        << tarBzip2({{"a/../../model.bin", text_, {}}}) << ModelPacking::archive;
    QTest::newRow("an absolute entry")
        << tarBzip2({{"/tmp/model.bin", text_, {}}}) << ModelPacking::archive;
  }
  void badDownloadsLeaveNoFiles() {
    QFETCH(QByteArray, bytes);
    QFETCH(ModelPacking, packing);
    put(bytes);
    QVERIFY_EXCEPTION_THROWN(run(packing, {"model.bin"}), Failure);
    QVERIFY(QDir(folder_).isEmpty());
    QCOMPARE(QDir(folder_ + "/..").entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
  }

  void startsNoExternalProgram() {
    // libarchive unpacks this compression only with an external program.
    const QByteArray grzip("GRZipII\0\2\4:)", 12);
    const QString started = dir_.filePath("started");
    QFile program(dir_.filePath("grzip"));
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.write("#!/bin/sh\n: >" + QFile::encodeName(started) + "\n");
    program.close();
    QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(dir_.path()) + ":" + path);
    put(grzip + text_);
    QVERIFY_EXCEPTION_THROWN(run(ModelPacking::archive, {"model.bin"}), Failure);
    qputenv("PATH", path);
    QVERIFY(!QFile::exists(started));
  }

  void stopEndsTheUnpacking() {
    put(gzipped(text_));
    std::stop_source stop;
    stop.request_stop();
    ModelDownload download;
    download.packing = ModelPacking::gzip;
    download.files.push_back({"model.bin", 0, {}});
    QVERIFY_EXCEPTION_THROWN(unpack(download, packed_, folder_, stop.get_token()), Cancelled);
    QVERIFY(QDir(folder_).isEmpty());
  }
};

QTEST_GUILESS_MAIN(UnpackTest)
#include "unpack_test.moc"
