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
  void installQuietly(const Model& model) override { askedQuietly += model.id; }
  QStringList busy() const override { return busyWith_; }

  void setBusy(const QStringList& ids) {
    busyWith_ = ids;
    Q_EMIT busyChanged();
  }

  QStringList present;
  QStringList asked;
  QStringList askedQuietly;
  /// The failure of every installation, if set.
  std::optional<QString> failure;

 private:
  QString root_;
  QStringList busyWith_;
};

}  // namespace velun::test
