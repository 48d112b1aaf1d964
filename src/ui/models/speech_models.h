// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "platform/models/model_catalogue.h"
#include "platform/speech/recognizer_candidate.h"
#include "ui/models/model_list.h"
#include "ui/models/model_services.h"

namespace velun {

/// The recognizers of every language. Main thread.
class SpeechModels final : public ModelList {
  Q_OBJECT

 public:
  /// `captions` and everything in `services` must outlive this object.
  SpeechModels(CaptionViewModel& captions, const ModelServices& services);

  QString title() const override;
  std::vector<ModelGroup> groups() const override;
  void perform(ModelAction action, const QString& group, const QString& model) override;

 private:
  ModelGroup group(const QString& locale) const;
  ModelRow row(const RecognizerCandidate& candidate, const QString& locale, bool isUsed) const;
  void describe(ModelRow& row, const Model& model, const RecognizerCandidate& candidate) const;
  void describeMarks(ModelRow& row, const Model* missing) const;
  const Model* missingMarks(const Model& model, const QString& language) const;
  std::vector<Model> missingParts(const Model& model, const Model* marks) const;
  QString summary(const std::vector<RecognizerCandidate>& candidates) const;
  void remove(const Model& model, const Model* marks);
  bool isPunctuated(const Model& marks, const Model& except) const;
  /// The locale that captions use now; empty when it is not supported.
  QString currentLocale() const;

  CaptionViewModel& captions_;
  ModelServices services_;
};

}  // namespace velun
