// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"
#include "platform/models/store/http_download.h"
#include "platform/models/store/verified_record.h"

#include <functional>

namespace velun {

/// Where models are kept and how they are fetched.
struct ModelStoreOptions {
  QString root;    ///< the folder that holds one folder a model
  QString mirror;  ///< an address in place of every host; empty for none
  HttpPatience patience;
  /// The space left on the root's disk, in bytes, negative when it is not known; the file system is
  /// asked when it is not set.
  std::function<std::int64_t()> freeBytes;
};

/// Installs one model after another, step by step, blocking. Any thread; several may work at once,
/// in this program or another: one model is installed by one of them while the others wait.
class ModelInstaller {
 public:
  explicit ModelInstaller(ModelStoreOptions options) : options_(std::move(options)) {}

  QString folder(const QString& id) const;
  bool isInstalled(const Model& model) const;

  /// Fetches what is missing. Throws `Failure` or `Cancelled`.
  void install(const Model& model, const std::stop_token& stop) const;

  /// Whether everything that the model needs lies in its folder with the right size, put there by
  /// hand, but was not verified yet. Looks at sizes only.
  bool isPlaced(const Model& model) const;

  /// Verifies what lies in the folder, without any network. False when it is not all there, or not
  /// right; that is left as it is. Throws `Failure` or `Cancelled`.
  bool installPlaced(const Model& model, const std::stop_token& stop) const;

 private:
  bool takePlaced(const Model& model, const ModelDownload& download, VerifiedRecord& record,
                  const std::stop_token& stop) const;
  void fetch(const Model& model, const ModelDownload& download, VerifiedRecord& record,
             const std::stop_token& stop) const;
  void fetchVerified(const ModelDownload& download, const QString& partial,
                     const std::stop_token& stop) const;
  void unpackVerified(const Model& model, const ModelDownload& download, const QString& packed,
                      VerifiedRecord& record, const std::stop_token& stop) const;
  void checkSpace(const Model& model, const std::vector<const ModelDownload*>& missing) const;
  QString partialFolder(const Model& model) const;
  QString partialPath(const Model& model, const ModelDownload& download) const;

  ModelStoreOptions options_;
};

}  // namespace velun
