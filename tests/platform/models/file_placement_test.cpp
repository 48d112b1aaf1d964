// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/file_placement.h"

#include "platform/foundation/failure.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/model_store_failures.h"
#include "support/suite.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;

/// A model of two files and one that is packed; the user has their files in a folder.
class FilePlacementTest final : public test::Suite {
  Q_OBJECT

  const QByteArray encoder_ = noise(3'000'000, 1);
  const QByteArray tokens_ = noise(5'000, 2);
  const QByteArray weights_ = noise(90'000, 3);
  std::unique_ptr<QTemporaryDir> dir_;
  ModelCatalogue catalogue_;
  std::vector<double> shares_;

  static ModelDownload plain(const QString& name, const QByteArray& bytes) {
    return {{"https://example.org/m/" + name},
            bytes.size(),
            sha256(bytes),
            ModelPacking::none,
            {{name, bytes.size(), sha256(bytes)}}};
  }

  QString put(const QString& name, const QByteArray& bytes) const {
    const QString path = dir_->filePath("downloads/" + name);
    QDir().mkpath(dir_->filePath("downloads"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("not saved");
    return path;
  }

  ModelInstaller installer() const {
    ModelStoreOptions options;
    options.root = dir_->filePath("models");
    return ModelInstaller(options);
  }

  PlacedModelFile place(const QString& path, const std::stop_token& stop = {}) {
    return placeModelFile(
        catalogue_, installer(), path, [this](double share) { shares_.push_back(share); }, stop);
  }

  QString failureOfPlacing(const QString& path) {
    try {
      place(path);
      return {};
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
  }

  bool isInstalled(const char* id) const { return installer().isInstalled(*catalogue_.find(id)); }

  QStringList filesOf(const QString& folder) const {
    return QDir(dir_->filePath(folder)).entryList(QDir::Files | QDir::Hidden);
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    shares_.clear();
    dir_ = std::make_unique<QTemporaryDir>();
    Model speech{"speech", ModelKind::recognition, {"en"}, "MIT", 0, {}, {}};
    speech.downloads = {plain("encoder.onnx", encoder_), plain("tokens.txt", tokens_)};
    Model packed{"packed", ModelKind::translation, {"en", "ko"}, "MIT", 90'000, {}, {}};
    const QByteArray zipped = gzipped(weights_);
    packed.downloads = {{{"https://example.org/m/weights.bin.gz"},
                         zipped.size(),
                         sha256(zipped),
                         ModelPacking::gzip,
                         {{"weights.bin", weights_.size(), sha256(weights_)}}}};
    catalogue_ = ModelCatalogue({speech, packed});
  }

  void fileIsRecognizedByItsContentUnderAnyName() {
    const PlacedModelFile first = place(put("whatever (1).bin", encoder_));
    QCOMPARE(first, (PlacedModelFile{"speech", {"tokens.txt"}}));
    QVERIFY(!isInstalled("speech"));
    const PlacedModelFile second = place(put("words", tokens_));
    QCOMPARE(second, (PlacedModelFile{"speech", {}}));
    QVERIFY(isInstalled("speech"));
    QCOMPARE(filesOf("downloads"), QStringList({"whatever (1).bin", "words"}));
  }

  void filesBesideItAreTakenToo() {
    put("tokens.txt", tokens_);
    const PlacedModelFile placed = place(put("encoder.onnx", encoder_));
    QCOMPARE(placed, (PlacedModelFile{"speech", {}}));
    QVERIFY(isInstalled("speech"));
    QVERIFY(std::is_sorted(shares_.begin(), shares_.begin() + 3));
    QVERIFY(shares_.size() >= 4);
    QCOMPARE(shares_.back(), 1.0);
  }

  void damagedFileBesideItIsNotTaken() {
    QByteArray damaged = tokens_;
    damaged[7] = static_cast<char>(damaged[7] ^ 1);
    put("tokens.txt", damaged);
    QCOMPARE(place(put("encoder.onnx", encoder_)).missing, QStringList("tokens.txt"));
    QVERIFY(!isInstalled("speech"));
  }

  void packedDownloadIsUnpacked() {
    QCOMPARE(place(put("weights.bin.gz", gzipped(weights_))), (PlacedModelFile{"packed", {}}));
    QVERIFY(isInstalled("packed"));
    QCOMPARE(filesOf("models/packed"), QStringList({"verified.json", "weights.bin"}));
  }

  void unpackedFileServesForItsDownload() {
    QCOMPARE(place(put("weights.bin", weights_)), (PlacedModelFile{"packed", {}}));
    QVERIFY(isInstalled("packed"));
  }

  void unknownFileIsRefused() {
    QByteArray damaged = encoder_;
    damaged[1'000'000] = static_cast<char>(damaged[1'000'000] ^ 1);
    const QString path = put("encoder.onnx", damaged);
    QCOMPARE(failureOfPlacing(path),
             model_failures::unknownFile("encoder.onnx").errorDescription());
    const QString other = put("photo.jpg", "not a model");
    QCOMPARE(failureOfPlacing(other), model_failures::unknownFile("photo.jpg").errorDescription());
    QCOMPARE(filesOf("models"), QStringList());
    QVERIFY(!failureOfPlacing(dir_->filePath("missing")).isEmpty());
  }

  void stopLeavesNothing() {
    std::stop_source stop;
    stop.request_stop();
    const QString path = put("encoder.onnx", encoder_);
    QVERIFY_THROWS_EXCEPTION(Cancelled, place(path, stop.get_token()));
    QCOMPARE(filesOf("models"), QStringList());
    QVERIFY(!isInstalled("speech"));
  }

  void copiesOfAKilledProgramAreSetAside() {
    const QString models = dir_->filePath("models");
    QVERIFY(QDir().mkpath(models));
    const QDateTime now = QDateTime::currentDateTime();
    for (const auto& [name, age] : {std::pair(".added-old", 601), std::pair(".added-new", 500)}) {
      QFile file(models + u'/' + name);
      QVERIFY(file.open(QIODevice::WriteOnly));
      QVERIFY(file.setFileTime(now.addSecs(-age), QFileDevice::FileModificationTime));
    }
    setAsideAbandonedCopies(models, models + "/.discarded", now);
    QCOMPARE(filesOf("models"), QStringList(".added-new"));
    QCOMPARE(filesOf("models/.discarded"), QStringList(".added-old"));
  }
};

QTEST_GUILESS_MAIN(FilePlacementTest)
#include "file_placement_test.moc"
