// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QByteArray>
#include <QString>

namespace velun {

/// Apertium's stream format: plain text in which some characters have a meaning, and bracketed
/// pieces that pass untouched.
namespace apertium_stream {

/// A text as one request, its closing NUL included.
QByteArray encode(const QString& text);

/// The text of one answer, given without its NUL; none when the answer is not whole, which
/// happens only when a stage has died.
std::optional<QString> decode(const QByteArray& answer);

}  // namespace apertium_stream

}  // namespace velun
