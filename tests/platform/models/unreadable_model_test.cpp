// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/file_error.h"
#include "platform/models/packed_bytes.h"
#include "platform/models/store/file_check.h"
#include "platform/models/store/model_installer.h"
#include "platform/models/store/model_store_failures.h"
#include "platform/models/store/unpack.h"
#include "support/failing_calls.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <cerrno>
#include <sys/syscall.h>
#include <utility>

using namespace velun;
using namespace velun::test;

class UnreadableModelTest final : public Suite {
  Q_OBJECT

  const QByteArray text_ = noise(100'000, 1);
  std::unique_ptr<TestFolder> folder_;

  /// A model whose download is complete and waits to be verified.
  Model downloadedModel(ModelPacking packing, const QByteArray& bytes) const {
    ModelDownload download;
    // Refused without a connection if the download is not complete.
    download.addresses = {"http://models.example/model.bin"};
    download.bytes = bytes.size();
    download.sha256 = sha256(bytes);
    download.packing = packing;
    download.files = {{"model.bin", text_.size(), sha256(text_)}};
    Model model;
    model.id = "test";
    model.downloads = {download};
    if (!QDir().mkpath(folder_->path(".downloads/test"))) qFatal("no folder");
    folder_->write(".downloads/test/model.bin.part", bytes);
    return model;
  }

  ModelInstaller installer() const {
    ModelStoreOptions options;
    options.root = folder_->path();
    options.freeBytes = [] {
      return std::int64_t(1) << 40;
    };
    return ModelInstaller(options);
  }

  void install(const Model& model) const {
    InstallProgress progress;
    installer().install(model, progress, {});
  }

  /// Returns whether the installation failed with an error other than a damaged download.
  static bool failsWithoutDamage(const std::function<void()>& install) {
    try {
      install();
    } catch (const DamagedModel&) {
      return false;
    } catch (const Failure& failure) {
      return !failure.errorDescription().isEmpty();
    }
    return false;
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<TestFolder>();
  }

  void downloadThatCannotBeReadNowIsKept_data() {
    QTest::addColumn<int>("code");
    QTest::newRow("no memory") << ENOMEM;
    QTest::newRow("network file system gone") << ESTALE;
    QTest::newRow("no permission") << EACCES;
  }
  void downloadThatCannotBeReadNowIsKept() {
    QFETCH(int, code);
    const Model model = downloadedModel(ModelPacking::none, text_);
    QVERIFY(runWithFailingCall(SYS_read, code, [&] {
      if (!failsWithoutDamage([&] { install(model); })) ::_exit(1);
    }));
    QCOMPARE(folder_->contents(".downloads/test/model.bin.part"), text_);
    // It is used as soon as it can be read.
    install(model);
    QVERIFY(installer().isInstalled(model));
  }

  void downloadOnABrokenPartOfTheDiskIsNotKept() {
    // Otherwise every attempt would fail at the same place.
    const Model model = downloadedModel(ModelPacking::none, text_);
    QVERIFY(runWithFailingCall(SYS_read, EIO, [&] {
      if (!failsWithoutDamage([&] { install(model); })) ::_exit(1);
    }));
    QCOMPARE(folder_->contents(".downloads/test/model.bin.part"), QByteArray());
  }

  void packedFileThatCannotBeOpenedIsNotDamaged_data() {
    QTest::addColumn<ModelPacking>("packing");
    QTest::newRow("gzip") << ModelPacking::gzip;
    QTest::newRow("zstd") << ModelPacking::zstd;
    QTest::newRow("archive") << ModelPacking::archive;
  }
  void packedFileThatCannotBeOpenedIsNotDamaged() {
    QFETCH(ModelPacking, packing);
    folder_->write("packed", packing == ModelPacking::zstd ? zstdCompressed(text_)
                             : packing == ModelPacking::gzip
                                 ? gzipped(text_)
                                 : tarBzip2({{"model.bin", text_, {}}}));
    ModelDownload download;
    download.packing = packing;
    download.files = {{"model.bin", 0, {}}};
    const auto unpackAll = [&] {
      unpack(download, folder_->path("packed"), folder_->path(), {});
    };
    for (const auto& [call, code] : {std::pair(SYS_openat, EMFILE), std::pair(SYS_read, ENOMEM)}) {
      QVERIFY(runWithFailingCall(call, code, [&] {
        if (!failsWithoutDamage(unpackAll)) ::_exit(1);
      }));
    }
    unpackAll();
    QCOMPARE(folder_->contents("model.bin"), text_);
  }

  void hashOfAFileThatCannotBeReadThrows() {
    folder_->write("file", "bytes");
    QCOMPARE(sha256OfFile(folder_->path("file"), {}), sha256("bytes"));
    QVERIFY_EXCEPTION_THROWN(sha256OfFile(folder_->path("missing"), {}), FileError);
    QVERIFY_EXCEPTION_THROWN(sha256OfFile(folder_->path(), {}), FileError);
    QVERIFY(runWithFailingCall(SYS_openat, EMFILE, [&] {
      try {
        sha256OfFile(folder_->path("file"), {});
      } catch (const FileError&) {
        return;
      }
      ::_exit(1);
    }));
  }
};

QTEST_GUILESS_MAIN(UnreadableModelTest)
#include "unreadable_model_test.moc"
