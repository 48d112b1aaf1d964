// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/line.h"

#include <QSet>
#include <QUuid>
#include <vector>

namespace velun {

/// The ids of the lines in one spoken language that have no text in one target language, kept up
/// to date line by line instead of being collected again for each reader.
class PendingTranslations {
 public:
  const QSet<QUuid>& ids(const std::vector<Line>& lines, const QString& sourceID,
                         const QString& targetID);

  /// The line is new or has another translation than before.
  void lineChanged(const Line& line);

  /// Other lines follow.
  void reset();

 private:
  bool isPending(const Line& line) const;

  bool isCollected_ = false;
  QString sourceID_;
  QString targetID_;
  QSet<QUuid> ids_;
};

}  // namespace velun
