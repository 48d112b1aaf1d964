// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"

#include <functional>
#include <utility>

namespace velun {

/// An error of installing a model. Its text can be made again when the interface language has
/// changed.
class ModelFailure : public Failure {
 public:
  using Text = std::function<QString()>;

  /// `text` returns the text in the interface language; called on any thread.
  explicit ModelFailure(Text text) : Failure(text()), text_(std::move(text)) {}

  const Text& text() const { return text_; }

  /// The text of any error: it follows the language if the error is a `ModelFailure`.
  static Text textOf(const std::exception& error) {
    if (const auto* failure = dynamic_cast<const ModelFailure*>(&error)) return failure->text();
    return [text = descriptionOf(error)] {
      return text;
    };
  }

 private:
  Text text_;
};

}  // namespace velun
