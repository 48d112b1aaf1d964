// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"
#include "platform/speech/caption_style.h"
#include "platform/speech/recognizer_provider.h"

#include <memory>
#include <optional>

namespace velun {

struct RecognizerSettings;

/// The neural recognizers of the model catalogue: one model per locale, downloaded on demand, run
/// in the helper program.
class NeuralRecognizerProvider final : public RecognizerProvider {
 public:
  /// `store` must outlive the provider. `program` is the helper's path. `style` is read by the
  /// recognizers of English.
  NeuralRecognizerProvider(
      ModelCatalogue catalogue, ModelStore& store, QString program,
      std::shared_ptr<const CaptionStyle> style = std::make_shared<CaptionStyle>());

  /// The helper program, beside the running one. Empty when it or sherpa-onnx is not installed.
  static QString installedProgram();

  /// Empty without the helper program.
  QStringList supportedLocales() const override;
  bool isInstalled(const QString& locale) const override;
  Factory factory(const QString& locale) const override;
  std::shared_ptr<SpeechModelOffer> offer(const QString& locale) override;
  void fetchInBackground(const QString& locale) override;

  /// The helper's configuration for an installed locale.
  RecognizerSettings settings(const QString& locale) const;

 private:
  /// The first model of the catalogue for the locale; null when there is none.
  const Model* modelFor(const QString& locale) const;
  const Model* punctuationFor(const QString& locale) const;
  /// Settings with the installed punctuation model alone; nullopt without one.
  std::optional<RecognizerSettings> punctuation(const QString& locale) const;

  ModelCatalogue catalogue_;
  ModelStore& store_;
  QString program_;
  std::shared_ptr<const CaptionStyle> style_;
};

}  // namespace velun
