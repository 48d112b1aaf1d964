// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/language_label.h"

#include "language/localization.h"

namespace velun {

QString languageLabel(const QString& identifier) {
  constexpr qsizetype kMaxLength = 60;
  const QString name = languageName(identifier);
  return name.size() <= kMaxLength ? name : name.left(kMaxLength - 1) + u'…';
}

}  // namespace velun
