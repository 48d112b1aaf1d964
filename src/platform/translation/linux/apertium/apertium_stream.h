// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QByteArray>
#include <QString>

namespace velun {

/// Apertium's stream format: plain text with escaped special characters, and bracketed parts that
/// are passed on unchanged.
namespace apertium_stream {

/// A text as one request, with its final NUL.
QByteArray encode(const QString& text);

/// The text of one response, given without its NUL. None when the response is incomplete, which
/// happens only when a program of the pipeline has died.
std::optional<QString> decode(const QByteArray& answer);

}  // namespace apertium_stream

}  // namespace velun
