// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace velun {

/// The user's words in the form in which sherpa-onnx takes them for transducers: it makes a
/// hypothesis likelier while it spells one of them.
struct Hotwords {
  QByteArray text;  ///< one a line; empty when the model cannot write any of them
  QByteArray unit;  ///< what the model's tokens are: "bpe" or "cjkchar"
  /// The tokens of "bpe", each with the score of its place among them: as a model's own vocabulary
  /// file has it, which is not part of the downloads.
  QByteArray vocabulary;

  bool operator==(const Hotwords&) const = default;
};

/// `userWords` has one name or term a line, `tokens` is the content of the model's token list.
/// Words with letters that no token has are left out. A model that writes one case only gets the
/// words in that case.
Hotwords makeHotwords(const QString& userWords, const QByteArray& tokens);

}  // namespace velun
