// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/sherpa_library.h"

#include <memory>
#include <mutex>

namespace velun {

/// Adds case and punctuation to English text. Any thread.
class Punctuator {
 public:
  /// Checks and loads the model. Throws `std::runtime_error`.
  Punctuator(const sherpa::Library& library, const RecognizerSettings& settings);

  /// The same words with punctuation; unchanged if the model fails or changes a word.
  QString punctuated(const QString& text) const;

 private:
  const sherpa::Library& library_;
  std::unique_ptr<const void, void (*)(const void*)> model_;
  mutable std::mutex mutex_;
};

}  // namespace velun
