// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_store.h"
#include "platform/models/store/http_download.h"
#include "platform/models/store/install_progress.h"
#include "platform/models/store/verified_record.h"

#include <functional>

namespace velun {

/// Where models are stored and how they are downloaded.
struct ModelStoreOptions {
  QString root;    ///< contains one folder for each model
  QString mirror;  ///< replaces scheme and host of every address; empty for none
  HttpRetryPolicy retries;
  /// The free space of `root` in bytes, negative if unknown. By default the file system is asked.
  std::function<std::int64_t()> freeBytes;
};

/// Installs models, blocking. Any thread. Several installers can run at the same time, also in
/// other processes: a model is installed by one of them while the others wait.
class ModelInstaller {
 public:
  explicit ModelInstaller(ModelStoreOptions options) : options_(std::move(options)) {}

  QString folder(const QString& id) const;
  bool isInstalled(const Model& model) const;

  /// Since when which revision of the model is installed; nullopt when none is.
  std::optional<ModelInstallation> installation(const Model& model) const;

  /// Downloads what is missing. Throws `Failure` or `Cancelled`.
  void install(const Model& model, InstallProgress& progress, const std::stop_token& stop) const;

  /// The bytes of the model's downloads that need not be downloaded any more.
  std::int64_t downloadedBytes(const Model& model) const;

  /// The bytes on the disk of the model's folder and of its partial downloads.
  std::int64_t diskBytes(const Model& model) const;

  /// Moves the verified files of the model, files that would be installed as such at the next
  /// start, and partial downloads to the new folder `target`, without copying. Not during an
  /// installation. Files that cannot be moved stay.
  void setAside(const Model& model, const QString& target) const;

  /// Whether the user has put everything that the model needs into its folder, and it is not yet
  /// verified. Compares sizes only.
  bool isPlaced(const Model& model) const;

  /// Verifies the files in the folder without using the network. False if some are missing or
  /// wrong; they are kept. Throws `Failure` or `Cancelled`.
  bool installPlaced(const Model& model, const std::stop_token& stop) const;

  /// Whether a file of the model that was installed is missing, has another content, or lies on a
  /// broken part of the disk. False if that cannot be found out now. Throws `Cancelled`.
  bool isDamaged(const Model& model, const std::stop_token& stop) const;

 private:
  bool usePlaced(const Model& model, const ModelDownload& download, VerifiedRecord& record,
                 const std::stop_token& stop) const;
  void fetch(const Model& model, const ModelDownload& download, VerifiedRecord& record,
             InstallProgress& progress, const std::stop_token& stop) const;
  void fetchSingly(const Model& model, const ModelDownload& archive, VerifiedRecord& record,
                   InstallProgress& progress, const std::stop_token& stop) const;
  void place(const Model& model, const ModelDownload& download, const QString& partial,
             VerifiedRecord& record) const;
  void fetchVerified(const ModelDownload& download, const QString& partial,
                     InstallProgress& progress, const std::stop_token& stop) const;
  void fetchFrom(const QString& address, const ModelDownload& download, const QString& partial,
                 InstallProgress& progress, const std::stop_token& stop) const;
  void unpackVerified(const Model& model, const ModelDownload& download, const QString& packed,
                      VerifiedRecord& record, const std::stop_token& stop) const;
  void checkSpace(const Model& model, const std::vector<const ModelDownload*>& missing) const;
  QString partialFolder(const Model& model) const;
  QString partialPath(const Model& model, const ModelDownload& download) const;

  ModelStoreOptions options_;
};

}  // namespace velun
