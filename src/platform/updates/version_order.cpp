// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/updates/version_order.h"

#include <algorithm>
#include <QStringList>

namespace velun {

namespace {

/// Splits a version into numbers and words; other characters separate them.
QStringList splitVersion(QString version) {
  version = version.section('+', 0, 0).trimmed().toLower();
  if (version.startsWith('v')) version.remove(0, 1);
  QStringList parts;
  bool joins = false;
  for (const QChar c : version) {
    if (!c.isLetterOrNumber()) {
      joins = false;
      continue;
    }
    if (joins && parts.last().back().isDigit() == c.isDigit()) {
      parts.last().append(c);
    } else {
      parts.append(c);
    }
    joins = true;
  }
  return parts;
}

/// Compares decimal numbers of any length.
int compareNumbers(QString left, QString right) {
  const auto trim = [](QString& digits) {
    while (digits.size() > 1 && digits.startsWith('0')) digits.remove(0, 1);
  };
  trim(left);
  trim(right);
  if (left.size() != right.size()) return left.size() < right.size() ? -1 : 1;
  return QString::compare(left, right);
}

bool isNumber(const QString& part) {
  return part.front().isDigit();
}

/// Compares a part with the end of the other version.
int compareToEnd(const QString& part) {
  // "1.2.0" is "1.2", but "1.2b" comes before "1.2".
  return isNumber(part) ? compareNumbers(part, "0") : -1;
}

int compareParts(const QString& left, const QString& right) {
  if (isNumber(left) && isNumber(right)) return compareNumbers(left, right);
  if (isNumber(left) != isNumber(right)) {
    // "1.2b" is older than "1.2.1".
    return isNumber(left) ? 1 : -1;
  }
  return QString::compare(left, right);
}

}  // namespace

int compareVersions(const QString& left, const QString& right) {
  const QStringList leftParts = splitVersion(left);
  const QStringList rightParts = splitVersion(right);
  for (qsizetype i = 0; i < std::max(leftParts.size(), rightParts.size()); ++i) {
    int order = 0;
    if (i >= rightParts.size()) {
      order = compareToEnd(leftParts[i]);
    } else if (i >= leftParts.size()) {
      order = -compareToEnd(rightParts[i]);
    } else {
      order = compareParts(leftParts[i], rightParts[i]);
    }
    if (order != 0) return order;
  }
  return 0;
}

}  // namespace velun
