// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/recognizer_provider.h"

namespace velun::test {

/// The factory of the best installed recognizer of the locale. Ends the program if there is none.
inline RecognizerProvider::Factory installedRecognizer(const RecognizerProvider& provider,
                                                       const QString& locale) {
  for (const RecognizerCandidate& candidate : provider.candidates(locale)) {
    if (candidate.isInstalled) return provider.makeFactory(locale, candidate.id);
  }
  qFatal("No recognizer of %s is installed", qPrintable(locale));
}

}  // namespace velun::test
