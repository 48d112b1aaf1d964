// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/sherpa_library.h"

#include <memory>
#include <string>
#include <vector>

namespace velun::test {

/// What a scripted model hears: tokens with their times in seconds since the stream began.
struct ScriptedToken {
  std::string text;
  double time = 0;
};
using ScriptedStream = std::vector<ScriptedToken>;

/// sherpa-onnx with a model whose tokens the test chooses. It decodes in the steps of the tiny
/// models. One at a time.
class ScriptedSherpa {
 public:
  /// The tokens of each stream, in the order in which the streams are created; later ones hear
  /// nothing.
  explicit ScriptedSherpa(std::vector<ScriptedStream> streams, double endpointSilence = 1.0);
  ~ScriptedSherpa();

  const sherpa::Library& library() const { return library_; }

  std::size_t createdStreams() const { return created_; }
  int resets() const { return resets_; }
  /// Seconds of audio that the present stream was fed.
  double fedSeconds() const { return fed_; }

 private:
  bool isReady() const;
  std::vector<ScriptedToken> heard() const;
  const sherpa::Result* result() const;
  bool isEndpoint() const;

  std::vector<ScriptedStream> streams_;
  double endpointSilence_;
  sherpa::Library library_ = {};
  std::size_t created_ = 0;
  int resets_ = 0;
  double fed_ = 0;
  int steps_ = 0;
};

}  // namespace velun::test
