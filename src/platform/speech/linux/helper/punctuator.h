// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/helper/recognizer_settings.h"
#include "platform/speech/linux/helper/sherpa_library.h"

#include <memory>

namespace velun {

/// Gives English words case and punctuation.
class Punctuator {
 public:
  /// Checks and loads the model. Throws `std::runtime_error`.
  Punctuator(const sherpa::Library& library, const RecognizerSettings& settings);

  /// The same words; as they were when the model has nothing to say or changes them.
  QString punctuated(const QString& text) const;

 private:
  const sherpa::Library& library_;
  std::unique_ptr<const void, void (*)(const void*)> model_;
};

}  // namespace velun
