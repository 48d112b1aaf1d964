// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"
#include "platform/speech/caption_style.h"
#include "platform/speech/neural/helper_program.h"
#include "platform/speech/voice_printer.h"

#include <memory>

namespace velun {

/// The speaker models of the catalogue, run in the helper program.
class SpeakerModels final : public VoiceProvider {
 public:
  /// `store` must outlive the object. `program` is the helper's path; empty if there is none.
  SpeakerModels(std::shared_ptr<const ModelCatalogue> catalogue, ModelStore& store, QString program,
                std::shared_ptr<const CaptionStyle> style);

  /// Uses the first model of the catalogue that is installed, if the style wants speakers.
  std::unique_ptr<VoicePrinter> makePrinter() override;

 private:
  std::shared_ptr<const ModelCatalogue> catalogue_;
  ModelStore& store_;
  QString program_;
  HelperProgram helper_;
  std::shared_ptr<const CaptionStyle> style_;
};

}  // namespace velun
