// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/release_notes.h"

#include <QRegularExpression>
#include <QSet>

namespace velun {

namespace {

constexpr int kMaxDepth = 20;

/// Elements that need no end tag.
const QSet<QString>& flatElements() {
  static const QSet<QString> names{"p", "li", "br", "hr"};
  return names;
}

const QSet<QString>& nestingElements() {
  static const QSet<QString> names{"b",  "strong", "i",  "em", "u",  "code", "pre", "blockquote",
                                   "ul", "ol",     "h1", "h2", "h3", "h4",   "h5",  "h6"};
  return names;
}

/// Counts nested elements; elements beyond kMaxDepth lose their tags.
class Depth {
 public:
  bool enters() {
    if (depth_ == kMaxDepth) {
      ++ignored_;
      return false;
    }
    ++depth_;
    return true;
  }

  bool leaves() {
    if (ignored_ > 0) {
      --ignored_;
      return false;
    }
    if (depth_ == 0) return false;
    --depth_;
    return true;
  }

 private:
  int depth_ = 0;
  int ignored_ = 0;
};

}  // namespace

QString sanitizedHtml(const QString& html) {
  // Comments; elements whose content is not text; tags.
  static const QRegularExpression markup(
      "<!--.*?(?:-->|$)|<(style|script|title)\\b.*?(?:</\\1\\s*>|$)|<(/"
      "?)([A-Za-z][A-Za-z0-9]*)[^<>]*>|<",
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
  const QString text = html.left(kMaxNotesLength);
  QString kept;
  qsizetype end = 0;
  Depth depth;
  auto found = markup.globalMatch(text);
  while (found.hasNext()) {
    const QRegularExpressionMatch match = found.next();
    kept += QStringView(text).mid(end, match.capturedStart() - end);
    end = match.capturedEnd();
    if (match.capturedLength() == 1) {
      kept += "&lt;";
      continue;
    }
    const QString name = match.captured(3).toLower();
    const bool isEnd = !match.capturedView(2).isEmpty();
    const bool isKept =
        flatElements().contains(name) ||
        (nestingElements().contains(name) && (isEnd ? depth.leaves() : depth.enters()));
    if (isKept) kept += u'<' + match.captured(2) + name + u'>';
  }
  kept += QStringView(text).mid(end);
  return kept;
}

}  // namespace velun
