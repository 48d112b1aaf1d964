// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/clip_styles.h"

#include <QDir>
#include <QFile>
#include <stdexcept>

namespace velun::bench {

std::vector<ClipStyle> readStyles(const QString& folder) {
  const QString prefix = QStringLiteral("style-");
  const QString suffix = QStringLiteral(".list");
  std::vector<ClipStyle> styles;
  const QStringList names =
      QDir(folder).entryList({prefix + u'*' + suffix}, QDir::Files, QDir::Name);
  for (const QString& name : names) {
    QFile file(folder + u'/' + name);
    if (!file.open(QFile::ReadOnly)) throw std::runtime_error(qPrintable(file.fileName()));
    const QString text = QString::fromUtf8(file.readAll());
    styles.push_back({name.sliced(prefix.size()).chopped(suffix.size()),
                      text.simplified().split(u' ', Qt::SkipEmptyParts)});
  }
  return styles;
}

}  // namespace velun::bench
