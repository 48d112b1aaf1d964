// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace velun {

/// Thrown when a model file cannot be used. The text is for developers; the message for users is
/// made by the caller, which knows the languages of the model.
class ModelFormatError final : public std::runtime_error {
 public:
  enum class Reason {
    damaged,      ///< The content is inconsistent or ends too early.
    unsupported,  ///< A correct file of a kind that this engine does not support.
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
