// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/punctuation_restorer.h"
#include "platform/speech/recognizer_provider.h"

#include <memory>

namespace velun {

/// US English, which needs no download.
class BuiltInRecognizerProvider final : public RecognizerProvider {
 public:
  /// Without `punctuation`, or where it has nothing installed for the locale, results have no
  /// punctuation.
  explicit BuiltInRecognizerProvider(std::shared_ptr<PunctuationProvider> punctuation = nullptr);

  QStringList supportedLocales() const override;
  bool isInstalled(const QString& locale) const override;
  Factory factory(const QString& locale) const override;

 private:
  std::shared_ptr<PunctuationProvider> punctuation_;
};

}  // namespace velun
