// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace velun::bench {

/// A way of speaking and the names of the clips that have it.
struct ClipStyle {
  QString name;
  QStringList clips;
};

/// The styles of a folder of clips, sorted by name: one file `style-NAME.list` each, with one clip
/// name per line. Throws std::runtime_error when a file cannot be read.
std::vector<ClipStyle> readStyles(const QString& folder);

}  // namespace velun::bench
