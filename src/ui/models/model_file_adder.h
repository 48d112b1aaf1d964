// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/latest_job.h"
#include "platform/models/model_failure.h"
#include "ui/models/model_files.h"
#include "ui/models/model_services.h"

#include <atomic>
#include <memory>

namespace velun {

class ScheduledCall;

/// Adds models from files, which are read on another thread. Main thread.
class ModelFileAdder final : public ModelFiles {
  Q_OBJECT

 public:
  /// Everything in `services` must outlive this object.
  explicit ModelFileAdder(const ModelServices& services);
  ~ModelFileAdder() override;

  std::int64_t diskBytes() const override;
  void addFromFile() override;
  void cancelAdding() override;
  std::optional<double> progress() const override;
  QString outcome() const override;

 private:
  /// What a file became, or why it was refused.
  struct Result {
    PlacedModelFile placed;
    ModelFailure::Text failure;
  };

  void read(const QString& path);
  void finish(const Result& result);
  void reportLater();

  ModelServices services_;
  std::shared_ptr<std::atomic<double>> share_;
  std::unique_ptr<ScheduledCall> reporting_;
  std::optional<Result> last_;
  LatestJob job_;
};

}  // namespace velun
