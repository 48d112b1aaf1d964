// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>

struct cmd_ln_s;

namespace velun {

/// Computes the features of a whole phrase for PocketSphinx, with part of the noise removed: they
/// are between its features with and without noise removal. For one thread.
class PhraseFeatures {
 public:
  /// `configuration` is the decoder's.
  explicit PhraseFeatures(cmd_ln_s* configuration);
  ~PhraseFeatures();

  /// Takes 16-bit samples at 16 kHz. Returns one row of features per 10 ms, with their mean over
  /// the phrase subtracted; valid until the next call.
  std::span<float*> extract(std::span<const std::int16_t> phrase);

 private:
  struct FrontEnd;
  struct Mean;
  std::unique_ptr<FrontEnd> asHeard_;
  std::unique_ptr<FrontEnd> withoutNoise_;
  std::unique_ptr<Mean> mean_;
};

}  // namespace velun
