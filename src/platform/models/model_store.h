// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"
#include "platform/models/model_state.h"
#include "platform/models/model_uses.h"
#include "platform/models/placed_model_file.h"

#include <memory>
#include <optional>
#include <QCoroTask>
#include <QDate>
#include <QObject>
#include <stop_token>

namespace velun {

/// A model on this computer.
struct ModelInstallation {
  QDate date;
  bool isCurrent = true;  ///< false: another revision than that of the catalogue

  bool operator==(const ModelInstallation&) const = default;
};

/// The models on this computer, one folder each. A model is used only after all of its files have
/// been verified. Nothing is downloaded unless `install` or `download` is called. Main thread.
class ModelStore : public QObject {
  Q_OBJECT

 public:
  /// Whether every file of the model is there, verified, and unchanged since. Cheap: compares sizes
  /// and modification times only.
  virtual bool isInstalled(const Model& model) const = 0;

  /// The folder of the model, which may not exist.
  virtual QString folder(const Model& model) const = 0;

  virtual ModelState state(const Model& model) const = 0;

  /// Completes when the model is installed; at once if it is already. Uses files that the user has
  /// put into its folder, continues an interrupted or paused download, and joins a running one of
  /// the same model; it goes on waiting while the user pauses that. Throws `Failure`, also when the
  /// user cancels the download, or `Cancelled` without delay after a stop request; the download may
  /// take a moment longer to end.
  virtual QCoro::Task<> install(Model model, std::stop_token stop) = 0;

  /// Starts the download, continues a paused one, or tries a failed one again. The outcome is in
  /// `state`. The caller has asked the user, also if `isMetered`.
  virtual void download(const Model& model) = 0;

  /// Stops the download and keeps its part on the disk, also for later runs of the program.
  virtual void pause(const Model& model) = 0;

  /// Stops the download and deletes its part. Does nothing if the model is installed.
  virtual void cancel(const Model& model) = 0;

  /// Deletes the model's verified files and downloads. Other files of its folder are kept. Throws
  /// `Failure` if the model is in use or cannot be deleted.
  virtual void remove(const Model& model) = 0;

  /// Since when which revision of the model is installed; nullopt when none is.
  virtual std::optional<ModelInstallation> installation(const Model& model) const = 0;

  /// Adds files that the user has downloaded in another way. `stateChanged` is not emitted.
  virtual ModelFilePlacer filePlacer() const = 0;

  /// The bytes on the disk of the model and of its partial downloads.
  virtual std::int64_t diskBytes(const Model& model) const = 0;

  /// Whether the desktop reports a metered connection; false when it does not know. Downloads over
  /// it are allowed, but ask the user first.
  virtual bool isMetered() const = 0;

  /// The ids of the models that are being installed.
  virtual QStringList busy() const = 0;

  /// Protects the model from `remove` until the last copy of the result is destroyed, on any
  /// thread.
  [[nodiscard]] std::shared_ptr<const void> use(const Model& model) { return uses_->use(model.id); }
  bool isUsed(const Model& model) const { return uses_->isUsed(model.id); }
  /// For other threads. May outlive the store.
  const std::shared_ptr<ModelUses>& uses() const { return uses_; }

 Q_SIGNALS:
  /// `state` of the model with this id changed. At most a few times a second while a download makes
  /// progress.
  void stateChanged(const QString& id);

 private:
  std::shared_ptr<ModelUses> uses_ = std::make_shared<ModelUses>();
};

}  // namespace velun
