// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace velun {

/// Why a model file cannot be used. The text is for developers; what the user reads is made where
/// the languages of the model are known.
class ModelFormatError final : public std::runtime_error {
 public:
  enum class Reason {
    damaged,      ///< The bytes contradict themselves or end too early.
    unsupported,  ///< A sound file of a kind that this engine does not compute.
  };

  ModelFormatError(Reason reason, const std::string& detail)
      : std::runtime_error(detail), reason_(reason) {}

  Reason reason() const { return reason_; }

  static ModelFormatError damaged(const std::string& detail) {
    return ModelFormatError(Reason::damaged, detail);
  }
  static ModelFormatError unsupported(const std::string& detail) {
    return ModelFormatError(Reason::unsupported, detail);
  }

 private:
  Reason reason_;
};

}  // namespace velun
