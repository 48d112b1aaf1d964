// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/built_in_recognizer_provider.h"

#include "platform/speech/built_in/built_in_backend.h"
#include "platform/speech/built_in/sphinx_decoder.h"

namespace velun {

namespace {

const auto kLocale = QStringLiteral("en_US");

}  // namespace

BuiltInRecognizerProvider::BuiltInRecognizerProvider(
    std::shared_ptr<PunctuationProvider> punctuation)
    : punctuation_(std::move(punctuation)) {}

QStringList BuiltInRecognizerProvider::supportedLocales() const {
  return {kLocale};
}

bool BuiltInRecognizerProvider::isInstalled(const QString& locale) const {
  return locale == kLocale && SphinxDecoder::isInstalled();
}

RecognizerProvider::Factory BuiltInRecognizerProvider::factory(const QString& locale) const {
  PunctuationRestorer::Factory marks;
  if (punctuation_) marks = punctuation_->punctuationFactory(locale);
  return [marks]() -> std::unique_ptr<RecognizerBackend> {
    return std::make_unique<BuiltInBackend>(marks ? marks() : nullptr);
  };
}

}  // namespace velun
