// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_server.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/model_installer.h"
#include "support/failure_of.h"
#include "support/suite.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

/// Downloads that several servers have.
class ModelAddressesTest final : public test::Suite {
  Q_OBJECT

  const QByteArray encoder_ = noise(200'000, 1);
  const QByteArray archive_ = tarBzip2({{"m/encoder.onnx", encoder_, {}}});
  std::unique_ptr<QTemporaryDir> dir_;
  std::unique_ptr<ModelServer> first_;
  std::unique_ptr<ModelServer> second_;

  QString install(const ModelDownload& download) {
    ModelStoreOptions options;
    options.root = dir_->path();
    options.retries = {2000ms, 1ms, 1};
    const Model model{"m", ModelKind::recognition, {"en"}, "MIT", encoder_.size(), {}, {download}};
    const ModelInstaller installer(options);
    InstallProgress progress;
    try {
      installer.install(model, progress, {});
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return installer.isInstalled(model) ? QString() : "not installed";
  }

  ModelDownload plain() const {
    return {{first_->address("/a/encoder.onnx"), second_->address("/b/encoder.onnx")},
            encoder_.size(),
            sha256(encoder_),
            ModelPacking::none,
            {{"encoder.onnx", encoder_.size(), sha256(encoder_)}}};
  }

  ModelDownload packed() const {
    return {{first_->address("/a/m.tar.bz2")},
            archive_.size(),
            sha256(archive_),
            ModelPacking::archive,
            {{"encoder.onnx",
              encoder_.size(),
              sha256(encoder_),
              {second_->address("/b/encoder.onnx")}}}};
  }

  QByteArray installedEncoder() const {
    QFile file(dir_->filePath("m/encoder.onnx"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
  }

  bool leftNothingBehind() const {
    return QDir(dir_->filePath(".downloads/m")).entryList({"*.part"}, QDir::Files).isEmpty();
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    dir_ = std::make_unique<QTemporaryDir>();
    first_ = std::make_unique<ModelServer>();
    second_ = std::make_unique<ModelServer>();
    first_->files["/a/encoder.onnx"] = encoder_;
    first_->files["/a/m.tar.bz2"] = archive_;
    second_->files["/b/encoder.onnx"] = encoder_;
  }

  void firstAddressIsEnough() {
    QCOMPARE(install(plain()), QString());
    QCOMPARE(installedEncoder(), encoder_);
    QVERIFY(second_->requests.isEmpty());
  }

  void nextAddressServesWhatTheFirstDoesNotHave() {
    first_->files.clear();
    QCOMPARE(install(plain()), QString());
    QCOMPARE(installedEncoder(), encoder_);
    QCOMPARE(second_->requests, QStringList("/b/encoder.onnx"));
  }

  void nextAddressContinuesAnInterruptedDownload() {
    first_->answers = {{.cutAfter = 120'000}, {.cutAfter = 0}};
    QCOMPARE(install(plain()), QString());
    QCOMPARE(installedEncoder(), encoder_);
    QCOMPARE(second_->requests, QStringList("/b/encoder.onnx from 120000"));
  }

  void nextAddressReplacesAChangedFile() {
    first_->files["/a/encoder.onnx"] = noise(200'000, 2);
    QCOMPARE(install(plain()), QString());
    QCOMPARE(installedEncoder(), encoder_);
    QVERIFY(leftNothingBehind());
  }

  void failureOfTheFirstAddressIsShown() {
    first_->answers = {{.status = 410}};
    second_->answers = {{.status = 404}};
    QVERIFY(install(plain()).contains("410"));
  }

  void archiveIsEnough() {
    QCOMPARE(install(packed()), QString());
    QCOMPARE(installedEncoder(), encoder_);
    QVERIFY(second_->requests.isEmpty());
  }

  void filesOfAMissingArchiveAreDownloadedByThemselves() {
    first_->files.clear();
    QCOMPARE(install(packed()), QString());
    QCOMPARE(installedEncoder(), encoder_);
    QVERIFY(leftNothingBehind());
  }

  void changedArchiveIsReplacedByItsFiles() {
    first_->files["/a/m.tar.bz2"] = noise(static_cast<int>(archive_.size()), 3);
    QCOMPARE(install(packed()), QString());
    QCOMPARE(installedEncoder(), encoder_);
    QVERIFY(leftNothingBehind());
  }

  void damagedFileOfAMissingArchiveIsRefused() {
    first_->files.clear();
    second_->files["/b/encoder.onnx"] = noise(200'000, 2);
    QVERIFY(install(packed()).contains("damaged"));
    QCOMPARE(installedEncoder(), QByteArray("missing"));
  }

  void cancelledDownloadTriesNoOtherAddress() {
    ModelStoreOptions options;
    options.root = dir_->path();
    const Model model{"m", ModelKind::recognition, {"en"}, "MIT", encoder_.size(), {}, {plain()}};
    first_->answers = {{.hangAfter = 50'000}};
    InstallProgress progress;
    std::stop_source stop;
    connect(first_.get(), &QTcpServer::newConnection, this, [&stop] { stop.request_stop(); });
    QVERIFY_EXCEPTION_THROWN(ModelInstaller(options).install(model, progress, stop.get_token()),
                             Cancelled);
    QVERIFY(second_->requests.isEmpty());
  }
};

QTEST_GUILESS_MAIN(ModelAddressesTest)
#include "model_addresses_test.moc"
