// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>

struct cmd_ln_s;

namespace velun {

/// Turns a whole phrase into the features that the English recognizer decodes, with a part of the
/// noise taken out of them: they lie between the features without and with the library's noise
/// removal. For one thread.
class PhraseFeatures {
 public:
  /// `configuration` is that of the decoder they are for.
  explicit PhraseFeatures(cmd_ln_s* configuration);
  ~PhraseFeatures();

  /// Takes 16-bit samples at 16 kHz. The features of the phrase, one row each 10 ms, less their
  /// mean over the phrase; valid until the next call.
  std::span<float*> extract(std::span<const std::int16_t> phrase);

 private:
  struct FrontEnd;
  struct Mean;
  std::unique_ptr<FrontEnd> asHeard_;
  std::unique_ptr<FrontEnd> withoutNoise_;
  std::unique_ptr<Mean> mean_;
};

}  // namespace velun
