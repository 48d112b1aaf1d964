// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"
#include "platform/models/store/model_installer.h"

#include <list>
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

  /// Verifies, on a thread, models that the user has put into their folders. `isMetered` is asked
  /// before each background download.
  DownloadStore(ModelCatalogue catalogue, ModelStoreOptions options, const Clock& clock,
                std::function<bool()> isMetered);
  ~DownloadStore() override;

  bool isInstalled(const Model& model) const override;
  QString folder(const Model& model) const override;
  QCoro::Task<> install(Model model, std::stop_token stop) override;
  void installQuietly(const Model& model) override;
  QStringList busy() const override;

 private:
  struct Job;
  using Done = std::function<void(std::exception_ptr)>;

  void start(const Model& model, const std::stop_token& stop, const Done& done);
  void finish(const Job* job);
  void verifyPlaced(ModelCatalogue catalogue);
  bool failedToday(const QString& id) const;
  void rememberFailure(const QString& id) const;
  QString failurePath(const QString& id) const;

  ModelInstaller installer_;
  QString root_;
  const Clock& clock_;
  std::function<bool()> isMetered_;
  std::list<std::unique_ptr<Job>> jobs_;
  std::jthread finder_;
};

}  // namespace velun
