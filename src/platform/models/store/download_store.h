// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/foundation/one_shot.h"
#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"
#include "platform/models/store/model_installer.h"
#include "platform/models/store/model_verifier.h"

#include <functional>
#include <map>
#include <memory>
#include <thread>

namespace velun {

/// Keeps models on disk and downloads them. Each installation has a thread of its own; the
/// destructor stops and joins them.
class DownloadStore final : public ModelStore {
  Q_OBJECT

 public:
  /// The default folder, which is beside that of the sessions.
  static QString standardRoot();

  /// Whether the desktop reports a metered connection; false when it does not know.
  static bool isConnectionMetered();

  /// Verifies, on a thread, models that the user has put into their folders. `clock` must outlive
  /// the store.
  DownloadStore(const ModelCatalogue& catalogue, const ModelStoreOptions& options, Clock& clock,
                std::function<bool()> isMetered);
  ~DownloadStore() override;

  bool isInstalled(const Model& model) const override;
  QString folder(const Model& model) const override;
  ModelState state(const Model& model) const override;
  QCoro::Task<> install(Model model, std::stop_token stop) override;
  void download(const Model& model) override;
  void pause(const Model& model) override;
  void cancel(const Model& model) override;
  void remove(const Model& model) override;
  /// The model with this id could not be used: it is not installed until its files are verified
  /// again, which a thread begins now. If they are damaged, its state is `failed`, and the next
  /// installation downloads them.
  void verifyAgain(const QString& id);
  std::optional<ModelInstallation> installation(const Model& model) const override;
  ModelFilePlacer filePlacer() const override;
  std::int64_t diskBytes(const Model& model) const override;
  bool isMetered() const override { return isMetered_(); }
  QStringList busy() const override;

 Q_SIGNALS:
  /// An installation with this id has ended well, perhaps of a model that was damaged. Emitted
  /// before `stateChanged`.
  void installed(const QString& id);
  /// Verifying an installed model again has found damage. `notice` says what to do, localized.
  void damageFound(const QString& notice);

 private:
  struct Job;
  struct Download;

  QCoro::Task<> waitFor(Model model, OneShot<bool> done, std::stop_token stop);
  Download& downloadOf(const Model& model);
  void proceed(Download& download);
  void startJob(Download& download);
  void finish(const QString& id, const std::exception_ptr& error);
  void fail(Download& download, const std::exception_ptr& error);
  void discard(const Model& model);
  void forgetIfIdle(const QString& id);
  void reportLater();
  void report();
  ModelState runningState(const Model& model, const Download& download) const;
  void reportDamage(const Model& model);
  void deleteOnThread(const QString& path);
  QString discardedFolder() const;

  ModelCatalogue catalogue_;
  ModelInstaller installer_;
  QString root_;
  ModelVerifier verifier_;
  Clock& clock_;
  std::function<bool()> isMetered_;
  std::map<QString, std::unique_ptr<Download>> downloads_;  ///< by model id
  std::unique_ptr<ScheduledCall> reporting_;
  std::jthread deletion_;
};

}  // namespace velun
