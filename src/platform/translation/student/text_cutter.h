// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QString>
#include <QStringList>

namespace velun {

/// Whether a text is short enough to be translated in one go.
using FitsModel = std::function<bool(const QString&)>;

/// Cuts a text into pieces that a model can translate by themselves: sentences; of one that does
/// not fit, runs of clauses that do; of a clause that does not, runs of words. What cannot be cut
/// any more is left too long. White space between pieces is dropped.
QStringList cutForModel(const QString& text, const QString& language, const FitsModel& fits);

}  // namespace velun
