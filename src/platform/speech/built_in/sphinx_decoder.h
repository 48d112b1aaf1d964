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

/// One decoder of the English recognizer. Belongs to one thread. Takes 16-bit samples at 16 kHz.
class SphinxDecoder {
 public:
  /// Names and values of the recognizer's settings.
  using Options = std::vector<std::pair<const char*, const char*>>;

  /// Loads the model, which takes a quarter of a second and 90 MB. Throws `Failure`.
  explicit SphinxDecoder(const Options& options);
  ~SphinxDecoder();

  void begin();
  void process(std::span<const std::int16_t> samples);
  /// The words of the phrase so far.
  QStringList words() const;
  void end();

  /// The library's own object, for what is not offered here. Same thread.
  ps_decoder_s* handle() const { return decoder_.get(); }

  /// Whether the model is there.
  static bool isInstalled();

 private:
  struct Free {
    void operator()(ps_decoder_s* decoder) const;
  };
  std::unique_ptr<ps_decoder_s, Free> decoder_;
};

}  // namespace velun
