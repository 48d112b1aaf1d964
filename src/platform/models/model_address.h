// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace velun {

/// Whether models may be downloaded from `address`: only over HTTPS, or from this computer.
bool isSafeModelAddress(const QUrl& address);

/// `address` with its scheme and host replaced by `mirror`, and with the path of `mirror` before
/// its own; unchanged if `mirror` is empty.
QUrl mirroredModelAddress(const QString& address, const QString& mirror);

}  // namespace velun
