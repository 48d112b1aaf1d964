// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_store.h"

#include <QDir>
#include <QStringList>

namespace velun::test {

/// A store in which models are installed by saying so.
class ScriptedModelStore final : public ModelStore {
 public:
  explicit ScriptedModelStore(QString root) : root_(std::move(root)) {}

  bool isInstalled(const Model& model) const override { return present.contains(model.id); }
  QString folder(const Model& model) const override { return root_ + u'/' + model.id; }
  QCoro::Task<> install(Model model, std::stop_token) override {
    asked += model.id;
    present += model.id;
    QDir().mkpath(folder(model));
    co_return;
  }
  void installQuietly(const Model& model) override { askedQuietly += model.id; }
  QStringList busy() const override { return {}; }

  QStringList present;
  QStringList asked;
  QStringList askedQuietly;

 private:
  QString root_;
};

}  // namespace velun::test
