// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace velun {

/// Whether a model may be fetched from there: over HTTPS, or from this computer itself.
bool isSafeModelAddress(const QUrl& address);

/// `address` with its host replaced by `mirror`, to which the path is appended; unchanged without a
/// mirror.
QUrl mirroredModelAddress(const QString& address, const QString& mirror);

}  // namespace velun
