// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/folded_text.h"

#include <QStringMatcher>
#include <unicode/casemap.h>
#include <unicode/edits.h>
#include <unicode/uchar.h>

namespace velun {

namespace {

/// Full case folding with ICU: Qt folds single letters, so "ß" would not match "SS". `edits` (may
/// be null) receives the mapping from the text to the result.
QString folded(const QString& text, icu::Edits* edits) {
  // Folding lengthens only a few letters.
  qsizetype room = text.size() + text.size() / 8 + 8;
  for (;;) {
    QString result(room, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = icu::CaseMap::fold(
        U_FOLD_CASE_DEFAULT, reinterpret_cast<const char16_t*>(text.utf16()),
        static_cast<std::int32_t>(text.size()), reinterpret_cast<char16_t*>(result.data()),
        static_cast<std::int32_t>(room), edits, status);
    result.truncate(length);
    if (status != U_BUFFER_OVERFLOW_ERROR) return result;
    room = length;
  }
}

}  // namespace

QString foldedForSearch(const QString& text) {
  return folded(text, nullptr);
}

std::vector<TextRange> matchesIn(const QString& text, const QString& search, std::size_t limit) {
  const QString needle = foldedForSearch(search);
  if (needle.isEmpty()) return {};
  // Folding can lengthen a text ("ß" to "ss"), which shifts positions.
  icu::Edits edits;
  const QString searched = folded(text, &edits);
  icu::Edits::Iterator edit = edits.getFineIterator();
  UErrorCode status = U_ZERO_ERROR;
  const auto sourceIndex = [&edit, &status](qsizetype at) {
    return edit.sourceIndexFromDestinationIndex(static_cast<std::int32_t>(at), status);
  };
  std::vector<TextRange> found;
  const QStringMatcher matcher(needle);
  for (qsizetype at = matcher.indexIn(searched); at >= 0 && found.size() < limit;
       at = matcher.indexIn(searched, at + needle.size())) {
    const qsizetype first = sourceIndex(at);
    const qsizetype last = sourceIndex(at + needle.size());
    // A match inside one letter that became several has no range in the text.
    if (last > first) found.push_back({first, last - first});
  }
  return found;
}

}  // namespace velun
