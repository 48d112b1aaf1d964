// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/packed_bytes.h"
#include "platform/models/store/file_placement.h"
#include "platform/models/store/model_store_failures.h"
#include "platform/models/store/move_into_place.h"
#include "platform/models/store/unpack.h"
#include "platform/models/store/verified_record.h"
#include "support/failing_calls.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <cerrno>
#include <sys/syscall.h>

using namespace velun;
using namespace velun::test;

/// A disk that becomes full while the files of a model are written.
class FullDiskTest final : public Suite {
  Q_OBJECT

  const QByteArray text_ = noise(300'000, 1);
  std::unique_ptr<TestFolder> folder_;

  /// Whether `work` fails on a full disk, and the user is told that it is full.
  static bool saysThatTheDiskIsFull(int call, const std::function<void()>& work) {
    return runWithFailingCall(call, ENOSPC, [&work] {
      try {
        work();
      } catch (const Failure& failure) {
        const QString expected = model_failures::diskFull().errorDescription();
        if (failure.errorDescription() == expected) return;
      }
      ::_exit(1);
    });
  }

  ModelDownload download(ModelPacking packing) const {
    const QByteArray bytes = packing == ModelPacking::gzip   ? gzipped(text_)
                             : packing == ModelPacking::zstd ? zstdCompressed(text_)
                             : packing == ModelPacking::archive
                                 ? tarBzip2({{"model.bin", text_, {}}})
                                 : text_;
    folder_->write("packed", bytes);
    return {{"https://example.org/packed"},
            bytes.size(),
            sha256(bytes),
            packing,
            {{"model.bin", text_.size(), sha256(text_)}}};
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<TestFolder>();
  }

  void unpacking_data() {
    QTest::addColumn<ModelPacking>("packing");
    QTest::newRow("gzip") << ModelPacking::gzip;
    QTest::newRow("zstd") << ModelPacking::zstd;
    QTest::newRow("archive") << ModelPacking::archive;
  }
  void unpacking() {
    QFETCH(ModelPacking, packing);
    const ModelDownload packed = download(packing);
    const auto unpackAll = [&] {
      unpack(packed, folder_->path("packed"), folder_->path(), {});
    };
    QVERIFY(saysThatTheDiskIsFull(SYS_write, unpackAll));
    QCOMPARE(folder_->names(), QStringList("packed"));
    unpackAll();
    QCOMPARE(folder_->contents("model.bin"), text_);
  }

  void addingAFile() {
    Model model{"model", ModelKind::recognition, {"en"}, "MIT", 0, {}, {}};
    model.downloads = {download(ModelPacking::none)};
    ModelStoreOptions options;
    options.root = folder_->path("models");
    const ModelInstaller installer(options);
    const auto add = [&] {
      placeModelFile(ModelCatalogue({model}), installer, folder_->path("packed"), [](double) {},
                     {});
    };
    QVERIFY(saysThatTheDiskIsFull(SYS_write, add));
    QVERIFY(!installer.isInstalled(model));
    // No part of the copy is left.
    QCOMPARE(QDir(options.root).entryList(QDir::Files | QDir::Hidden), QStringList());
    add();
    QVERIFY(installer.isInstalled(model));
  }

  void lastWriteOfAFinishedFile() {
    // Some file systems find only now that there is no room.
    folder_->write("part", text_);
    QVERIFY(saysThatTheDiskIsFull(
        SYS_fsync, [&] { moveIntoPlace(folder_->path("part"), folder_->path("model.bin")); }));
    QCOMPARE(folder_->names(), QStringList("part"));
  }

  void record() {
    QVERIFY(saysThatTheDiskIsFull(SYS_write, [&] { VerifiedRecord().write(folder_->path()); }));
  }
};

QTEST_GUILESS_MAIN(FullDiskTest)
#include "full_disk_test.moc"
