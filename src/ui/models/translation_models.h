// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "ui/models/model_list.h"
#include "ui/models/model_services.h"
#include "ui/models/translation_steps.h"

namespace velun {

/// The translations into and from every language. Main thread.
class TranslationModels final : public ModelList {
  Q_OBJECT

 public:
  /// `captions` and everything in `services` must outlive this object.
  TranslationModels(CaptionViewModel& captions, const ModelServices& services);

  QString title() const override;
  std::vector<ModelGroup> groups() const override;
  void perform(ModelAction action, const QString& group, const QString& model) override;

 private:
  TranslationFinder finder() const;
  QString spoken() const;
  /// Whether captions are translated into this language.
  bool isTarget(const QString& language) const;
  ModelGroup group(const TranslationFinder& finder, const QString& language) const;
  QString summary(const std::optional<TranslationSteps>& into,
                  const std::optional<TranslationSteps>& from) const;
  ModelRow row(const TranslationSteps& steps, const QString& id, const QString& title) const;
  void describe(ModelRow& row, const TranslationSteps& steps) const;
  std::vector<ModelRowAction> actions(const TranslationSteps& steps) const;
  void perform(ModelAction action, const TranslationSteps& steps, const QString& title);

  CaptionViewModel& captions_;
  ModelServices services_;
};

}  // namespace velun
