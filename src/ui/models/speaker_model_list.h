// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/model_list.h"
#include "ui/models/model_services.h"

namespace velun {

/// The models that tell speakers apart, in one group for all languages. Main thread.
class SpeakerModelList final : public ModelList {
  Q_OBJECT

 public:
  /// Everything in `services` must outlive this object.
  explicit SpeakerModelList(const ModelServices& services);

  QString title() const override;
  std::vector<ModelGroup> groups() const override;
  void perform(ModelAction action, const QString& group, const QString& model) override;

 private:
  ModelRow row(const Model& model, bool isUsed) const;

  ModelServices services_;
};

}  // namespace velun
