// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"
#include "platform/speech/caption_style.h"
#include "platform/speech/neural/decoding_speed.h"
#include "platform/speech/neural/helper_program.h"
#include "platform/speech/punctuation_restorer.h"
#include "platform/speech/recognizer_provider.h"

#include <memory>
#include <optional>
#include <QVersionNumber>
#include <vector>

namespace velun {

struct RecognizerSettings;

/// The neural recognizers of the model catalogue, one or several per locale, downloaded on demand
/// and run in the helper program.
class NeuralRecognizerProvider final : public RecognizerProvider {
 public:
  /// Receives the time of decoding per time of audio when a recognizer has run for a while, on its
  /// decode thread.
  using SpeedReport = std::function<void(const QString& id, double realTimeFactor)>;

  /// `store` must outlive the provider. `program` is the helper's path. `style` is read by the
  /// recognizers of English. `punctuation`, which may be null, is used by those that run in
  /// libvosk.
  NeuralRecognizerProvider(
      ModelCatalogue catalogue, ModelStore& store, QString program,
      std::shared_ptr<const CaptionStyle> style = std::make_shared<CaptionStyle>(),
      SpeedReport reportSpeed = [](const QString&, double) {},
      std::shared_ptr<PunctuationProvider> punctuation = nullptr);

  /// The helper program, beside the running one. Empty when it or sherpa-onnx is not installed.
  static QString installedProgram();

  /// Empty without the helper program.
  QStringList supportedLocales() const override;
  /// The models of the locale in the order of the catalogue; none without the helper program.
  std::vector<RecognizerCandidate> candidates(const QString& locale) const override;
  bool isBeingCompleted(const QString& locale, const QString& id) const override;
  Factory makeFactory(const QString& locale, const QString& id) const override;
  std::shared_ptr<SpeechModelOffer> offer(const QString& locale, const QString& id) override;

  /// The helper's configuration for an installed model in one of its locales.
  RecognizerSettings settings(const Model& model, const QString& locale) const;

  /// Why the model is not offered on this computer, localized; nullopt if it is.
  std::optional<QString> obstacle(const Model& model) const;

 private:
  /// Called on a decode thread for each recognizer.
  using MakeReport = std::function<DecodingSpeed::Report()>;

  /// The models of the locale, from best to worst.
  std::vector<const Model*> models(const QString& locale) const;
  /// English in libvosk, written by the rules of the built-in recognizer.
  Factory voskEnglishFactory(const QString& locale, RecognizerSettings settings,
                             MakeReport makeReport) const;
  /// Adds the punctuation model if it is installed.
  void addPunctuation(RecognizerSettings& settings, const Model* marks) const;

  ModelCatalogue catalogue_;
  ModelStore& store_;
  QString program_;
  HelperProgram helper_;
  QVersionNumber library_;  ///< of sherpa-onnx; null if it is not known
  QString vosk_;            ///< libvosk; empty if there is none
  std::shared_ptr<const CaptionStyle> style_;
  SpeedReport reportSpeed_;
  std::shared_ptr<PunctuationProvider> punctuation_;
};

}  // namespace velun
