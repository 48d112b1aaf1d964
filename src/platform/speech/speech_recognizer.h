// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/recognizer_provider.h"

#include <QString>

namespace velun {

/// One installed recognizer of a run.
struct SpeechRecognizer {
  QString id;     ///< different from those of the run's other recognizers
  QString title;  ///< for people; localized
  RecognizerProvider::Factory factory;
};

}  // namespace velun
