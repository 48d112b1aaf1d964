// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/neural/neural_backend.h"
#include "platform/speech/neural_fixture.h"

#include <algorithm>
#include <QStringList>
#include <span>
#include <vector>

namespace velun::test {

/// Feeds a sound to a recognizer in pieces.
inline void feed(RecognizerBackend& backend, const std::vector<float>& samples,
                 std::size_t piece = 1600) {
  const std::span<const float> all(samples);
  for (std::size_t at = 0; at < all.size(); at += piece) {
    backend.acceptAudio(all.subspan(at, std::min(piece, all.size() - at)));
  }
}

/// Polls the results and returns the final ones.
inline void keepFinals(RecognizerBackend& backend, QStringList& finals) {
  for (const TranscriptionResult& result : backend.poll()) {
    if (result.isFinal) finals.append(result.text);
  }
}

/// The final results of a sound from its beginning to its end.
inline QStringList finalsOf(const RecognizerSettings& settings, const std::vector<float>& samples,
                            std::size_t piece = 1600) {
  NeuralBackend backend(helperProgram(), settings);
  backend.load();
  feed(backend, samples, piece);
  backend.finalize();
  QStringList finals;
  keepFinals(backend, finals);
  return finals;
}

}  // namespace velun::test
