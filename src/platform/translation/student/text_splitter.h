// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QString>
#include <QStringList>

namespace velun {

/// Whether a text is short enough to be translated at once.
using FitsModel = std::function<bool(const QString&)>;

/// Splits a text into pieces that a model can translate separately: sentences; a sentence that
/// does not fit into runs of clauses, and a clause that does not fit into runs of words. A single
/// word may stay too long. White space between pieces is dropped. Any thread.
QStringList splitForModel(const QString& text, const QString& language, const FitsModel& fits);

}  // namespace velun
