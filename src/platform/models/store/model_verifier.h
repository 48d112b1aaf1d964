// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/store/model_installer.h"

#include <QObject>
#include <thread>
#include <utility>
#include <vector>

namespace velun {

/// Verifies, on a thread, the models whose files are in their folders and are not verified. Main
/// thread. The destructor stops and joins the thread.
class ModelVerifier final : public QObject {
  Q_OBJECT

 public:
  explicit ModelVerifier(ModelInstaller installer) : installer_(std::move(installer)) {}

  /// After the models of earlier calls. `areExpected`: they were installed before, so damage is
  /// reported.
  void verify(std::vector<Model> models, bool areExpected);

 Q_SIGNALS:
  /// The model with this id is installed now.
  void verified(const QString& id);
  void damaged(const velun::Model& model);

 private:
  void verifyOne(const Model& model, bool isExpected, const std::stop_token& stop);

  const ModelInstaller installer_;
  std::jthread thread_;
};

}  // namespace velun
