// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <QStringList>
#include <span>
#include <utility>
#include <vector>

struct ps_decoder_s;

namespace velun {

/// A PocketSphinx decoder for 16-bit samples at 16 kHz. For one thread.
class SphinxDecoder {
 public:
  /// Names and values of PocketSphinx settings.
  using Options = std::vector<std::pair<const char*, const char*>>;

  /// Loads the model, which takes a quarter of a second and 90 MB. Throws `Failure`.
  explicit SphinxDecoder(const Options& options);
  ~SphinxDecoder();

  void begin();
  void process(std::span<const std::int16_t> samples);
  /// The words of the phrase so far.
  QStringList words() const;
  void end();

  /// The PocketSphinx object.
  ps_decoder_s* handle() const { return decoder_.get(); }

  static bool isInstalled();

 private:
  struct Free {
    void operator()(ps_decoder_s* decoder) const;
  };
  std::unique_ptr<ps_decoder_s, Free> decoder_;
};

}  // namespace velun
