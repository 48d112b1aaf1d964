// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/models/model_store.h"

#include <optional>
#include <QDir>
#include <QStringList>

namespace velun::test {

/// A model store whose installed models the test sets.
class ScriptedModelStore final : public ModelStore {
 public:
  /// An installed model gets its folder below `root`.
  explicit ScriptedModelStore(QString root) : root_(std::move(root)) {}

  bool isInstalled(const Model& model) const override { return present.contains(model.id); }
  QString folder(const Model& model) const override { return root_ + u'/' + model.id; }
  QCoro::Task<> install(Model model, std::stop_token) override {
    asked += model.id;
    if (failure) throw Failure(*failure);
    present += model.id;
    QDir().mkpath(folder(model));
    co_return;
  }
  ModelState state(const Model& model) const override {
    ModelState state;
    if (isInstalled(model)) state.stage = ModelState::Stage::installed;
    state = states_.value(model.id, state);
    state.totalBytes = model.downloadBytes();
    return state;
  }
  void download(const Model& model) override { asked += model.id; }
  void pause(const Model& model) override { paused += model.id; }
  void cancel(const Model& model) override { cancelled += model.id; }
  void remove(const Model& model) override {
    if (failure) throw Failure(*failure);
    present.removeAll(model.id);
    setState(model, {});
  }
  std::optional<ModelInstallation> installation(const Model& model) const override {
    if (outdated.contains(model.id)) return ModelInstallation{QDate(2026, 3, 1), false};
    if (!isInstalled(model)) return std::nullopt;
    return ModelInstallation{QDate(2026, 11, 22), true};
  }
  ModelFilePlacer filePlacer() const override { return placer; }
  std::int64_t diskBytes(const Model& model) const override {
    return isInstalled(model) ? model.installedBytes : 0;
  }
  bool isMetered() const override { return metered; }
  QStringList busy() const override { return busyWith_; }

  void setBusy(const QStringList& ids) {
    busyWith_ = ids;
    Q_EMIT stateChanged(ids.value(0));
  }

  /// Sets the state of a model that is not installed.
  void setState(const Model& model, const ModelState& state) {
    states_[model.id] = state;
    Q_EMIT stateChanged(model.id);
  }
  void setInstalled(const Model& model) {
    states_.remove(model.id);
    present += model.id;
    Q_EMIT stateChanged(model.id);
  }

  QStringList present;
  /// Models of which another revision is installed.
  QStringList outdated;
  ModelFilePlacer placer;
  QStringList asked;
  QStringList paused;
  QStringList cancelled;
  bool metered = false;
  /// The failure of every installation and removal, if set.
  std::optional<QString> failure;

 private:
  QString root_;
  QStringList busyWith_;
  QHash<QString, ModelState> states_;
};

}  // namespace velun::test
