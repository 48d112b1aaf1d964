// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_search.h"

#include <QHash>
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

namespace {

/// Up to this many texts are folded on the main thread without a noticeable delay.
constexpr std::size_t kMaxFoldedAtOnce = 4;

QString searchableText(const SavedSession& saved) {
  const CaptionSession& session = saved.session;
  return foldedForSearch(session.title + QLatin1Char('\n') +
                         session.transcript(TranscriptContent::both, std::nullopt));
}

}  // namespace

void SessionSearch::setSessions(const SavedSessions& sessions) {
  QHash<const SavedSession*, Folded> known;
  for (std::size_t i = 0; i < folded_.size(); ++i) known[sessions_[i].get()] = folded_[i];
  sessions_ = sessions;
  forget();
  if (known.isEmpty()) return;
  std::size_t added = 0;
  for (const auto& session : sessions_) {
    Folded text = known.value(session.get());
    if (!text && ++added > kMaxFoldedAtOnce) {
      forget();
      return;
    }
    if (!text) text = std::make_shared<const FoldedText>(searchableText(*session));
    folded_.push_back(std::move(text));
  }
}

std::optional<SavedSessions> SessionSearch::matches(const QString& text) {
  if (text.isEmpty()) return sessions_;
  if (folded_.size() != sessions_.size()) {
    startFolding();
    return std::nullopt;
  }
  SavedSessions found;
  const QString searched = foldedForSearch(text);
  const TextSignature signature(searched);
  const QStringMatcher matcher(searched);
  for (std::size_t i = 0; i < sessions_.size(); ++i) {
    const FoldedText& folded = *folded_[i];
    if (!folded.signature.mayHold(signature)) continue;
    if (matcher.indexIn(folded.text) >= 0) found.push_back(sessions_[i]);
  }
  return found;
}

void SessionSearch::forget() {
  folding_.cancel();
  folded_.clear();
}

void SessionSearch::startFolding() {
  if (folding_.isRunning()) return;
  folding_.start(
      [sessions = sessions_](const std::stop_token& stop) {
        std::vector<Folded> folded;
        folded.reserve(sessions.size());
        for (const auto& session : sessions) {
          if (stop.stop_requested()) break;
          folded.push_back(std::make_shared<const FoldedText>(searchableText(*session)));
        }
        return folded;
      },
      [this](std::vector<Folded> folded) {
        folded_ = std::move(folded);
        Q_EMIT ready();
      });
}

}  // namespace velun
