// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/speaker_model.h"

#include "platform/speech/helper/model_preflight.h"
#include "platform/speech/helper/speech_level.h"

#include <cmath>
#include <numeric>
#include <QFile>
#include <stdexcept>

namespace velun {

namespace {

constexpr std::int32_t kRate = 16000;

/// Empty if the print has no direction.
std::vector<float> ofLengthOne(std::vector<float> print) {
  const double square = std::inner_product(print.begin(), print.end(), print.begin(), 0.0);
  if (!std::isfinite(square) || square <= 0) return {};
  const auto scale = static_cast<float>(1 / std::sqrt(square));
  for (float& value : print) value *= scale;
  return print;
}

}  // namespace

SpeakerModel::SpeakerModel(const sherpa::Library& library, const RecognizerSettings& settings)
    : library_(library), model_(nullptr, library.destroySpeakerModel) {
  checkSpeakerModel(settings);
  const QByteArray path = QFile::encodeName(settings.speakerModel);
  const sherpa::SpeakerConfig config = {path.constData(), 1, 0, "cpu"};
  model_.reset(library.createSpeakerModel(&config));
  if (!model_) throw std::runtime_error("the speaker model cannot be loaded");
}

std::vector<float> SpeakerModel::print(std::span<const float> samples) const {
  const std::lock_guard lock(mutex_);
  const std::unique_ptr<const void, void (*)(const void*)> stream(
      library_.createPrintStream(model_.get()), library_.destroyStream);
  if (!stream) return {};
  const std::vector<float> usable = usableSamples(samples);
  const auto count = static_cast<std::int32_t>(usable.size());
  library_.acceptWaveform(stream.get(), kRate, usable.data(), count);
  library_.inputFinished(stream.get());
  if (!library_.canPrint(model_.get(), stream.get())) return {};
  const std::unique_ptr<const float, void (*)(const float*)> values(
      library_.print(model_.get(), stream.get()), library_.destroyPrint);
  if (!values) return {};
  return ofLengthOne({values.get(), values.get() + library_.printSize(model_.get())});
}

}  // namespace velun
