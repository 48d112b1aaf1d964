// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/line.h"

#include <QSet>
#include <QUuid>
#include <vector>

namespace velun {

/// The ids of the lines spoken in one locale that have no text in one target language. Collected
/// once and then updated line by line.
class PendingTranslations {
 public:
  const QSet<QUuid>& ids(const std::vector<Line>& lines, const QString& sourceID,
                         const QString& targetID);

  /// The line is new, or its translations have changed.
  void lineChanged(const Line& line);

 private:
  bool isPending(const Line& line) const;

  bool isCollected_ = false;
  QString sourceID_;
  QString targetID_;
  QSet<QUuid> ids_;
};

}  // namespace velun
