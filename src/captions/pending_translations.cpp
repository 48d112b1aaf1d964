// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/pending_translations.h"

namespace velun {

const QSet<QUuid>& PendingTranslations::ids(const std::vector<Line>& lines, const QString& sourceID,
                                            const QString& targetID) {
  if (!isCollected_ || sourceID != sourceID_ || targetID != targetID_) {
    ids_.clear();
    sourceID_ = sourceID;
    targetID_ = targetID;
    isCollected_ = true;
    for (const Line& line : lines) lineChanged(line);
  }
  return ids_;
}

void PendingTranslations::lineChanged(const Line& line) {
  if (!isCollected_) return;
  if (isPending(line)) {
    ids_.insert(line.id);
  } else {
    ids_.remove(line.id);
  }
}

bool PendingTranslations::isPending(const Line& line) const {
  return line.sourceLanguage == sourceID_ && !line.translations.contains(targetID_) &&
         !line.legacyTranslation;
}

}  // namespace velun
