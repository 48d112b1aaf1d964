// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/speaker_models.h"

#include "platform/models/installed_model.h"
#include "platform/speech/neural/voice_helper.h"

#include <QDir>
#include <utility>

namespace velun {

namespace {

VoiceLimits limitsOf(const Model& model) {
  VoiceLimits limits;
  limits.same = model.options["same"].toDouble(limits.same);
  limits.different = model.options["different"].toDouble(limits.different);
  return limits;
}

}  // namespace

SpeakerModels::SpeakerModels(std::shared_ptr<const ModelCatalogue> catalogue, ModelStore& store,
                             QString program, std::shared_ptr<const CaptionStyle> style)
    : catalogue_(std::move(catalogue)),
      store_(store),
      program_(std::move(program)),
      helper_(program_),
      style_(std::move(style)) {}

std::unique_ptr<VoicePrinter> SpeakerModels::makePrinter() {
  if (program_.isEmpty() || !style_->labelsSpeakers) return nullptr;
  const Model* model = installedModel(*catalogue_, store_, ModelKind::speakers);
  if (!model) return nullptr;
  RecognizerSettings settings;
  settings.speakerModel = QDir(store_.folder(*model)).filePath(model->options["model"].toString());
  return std::make_unique<VoiceHelper>(helper_, settings, limitsOf(*model),
                                       store_.uses()->use(model->id));
}

}  // namespace velun
