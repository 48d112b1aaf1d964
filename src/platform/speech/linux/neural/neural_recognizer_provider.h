// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"
#include "platform/speech/punctuation_restorer.h"
#include "platform/speech/recognizer_provider.h"

#include <memory>
#include <optional>

namespace velun {

struct RecognizerSettings;

/// The neural recognizers of the catalogue: one model a locale, fetched when it is wanted, run in
/// the helper program.
class NeuralRecognizerProvider final : public RecognizerProvider, public PunctuationProvider {
 public:
  /// `store` must outlive the provider. `program` is the helper's path.
  NeuralRecognizerProvider(ModelCatalogue catalogue, ModelStore& store, QString program);

  /// Where the helper program is: beside the running one. Empty when it, or the library that it
  /// needs, is not there.
  static QString installedProgram();

  /// None without the helper program.
  QStringList supportedLocales() const override;
  bool isInstalled(const QString& locale) const override;
  Factory factory(const QString& locale) const override;
  std::shared_ptr<SpeechModelOffer> offer(const QString& locale) override;
  void fetchInBackground(const QString& locale) override;

  /// What the helper is told for a locale that is installed.
  RecognizerSettings settings(const QString& locale) const;

  PunctuationRestorer::Factory punctuationFactory(const QString& locale) const override;

 private:
  /// The first model of the catalogue that is offered for the locale; null when there is none.
  const Model* modelFor(const QString& locale) const;
  const Model* punctuationFor(const QString& locale) const;
  /// Settings that only restore punctuation; none when no model is installed for it.
  std::optional<RecognizerSettings> punctuation(const QString& locale) const;

  ModelCatalogue catalogue_;
  ModelStore& store_;
  QString program_;
};

}  // namespace velun
