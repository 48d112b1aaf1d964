// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_search.h"

#include <QCoreApplication>
#include <QHash>
#include <QPointer>
#include <QStringMatcher>
#include <QThreadPool>
#include <unicode/casemap.h>
#include <unicode/edits.h>
#include <unicode/uchar.h>

namespace velun {

namespace {

/// Full folding: the toolkit's own goes letter by letter, to which "ß" and "SS" are not the same.
/// `edits` (may be null) takes which part of the result came from which part of the text.
QString folded(const QString& text, icu::Edits* edits) {
  // Few letters become longer.
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
  // Folding can lengthen a text ("ß" to "ss"), so the places in it are others.
  icu::Edits edits;
  const QString searched = folded(text, &edits);
  icu::Edits::Iterator places = edits.getFineIterator();
  UErrorCode status = U_ZERO_ERROR;
  const auto placeOf = [&places, &status](qsizetype at) {
    return places.sourceIndexFromDestinationIndex(static_cast<std::int32_t>(at), status);
  };
  std::vector<TextRange> found;
  const QStringMatcher matcher(needle);
  for (qsizetype at = matcher.indexIn(searched); at >= 0 && found.size() < limit;
       at = matcher.indexIn(searched, at + needle.size())) {
    const qsizetype first = placeOf(at);
    const qsizetype last = placeOf(at + needle.size());
    // Nothing of the text begins within a letter that became several.
    if (last > first) found.push_back({first, last - first});
  }
  return found;
}

namespace {

/// So few texts are folded at once without being noticed.
constexpr std::size_t kFewSessions = 4;

QString searchableText(const SavedSession& saved) {
  const CaptionSession& session = saved.session;
  return foldedForSearch(session.title + QLatin1Char('\n') +
                         session.transcript(TranscriptContent::both, std::nullopt));
}

}  // namespace

SessionSearch::SessionSearch(QObject* parent) : QObject(parent) {}

SessionSearch::~SessionSearch() = default;

void SessionSearch::setSessions(const SavedSessions& sessions) {
  QHash<const SavedSession*, Folded> known;
  for (std::size_t i = 0; i < folded_.size(); ++i) known[sessions_[i].get()] = folded_[i];
  sessions_ = sessions;
  forget();
  if (known.isEmpty()) return;
  std::size_t added = 0;
  for (const auto& session : sessions_) {
    Folded text = known.value(session.get());
    if (!text && ++added > kFewSessions) {
      forget();
      return;
    }
    if (!text) text = std::make_shared<const QString>(searchableText(*session));
    folded_.push_back(std::move(text));
  }
}

std::optional<SavedSessions> SessionSearch::matches(const QString& text) {
  if (text.isEmpty()) return sessions_;
  if (folded_.size() != sessions_.size()) {
    foldInBackground();
    return std::nullopt;
  }
  SavedSessions found;
  const QStringMatcher matcher(foldedForSearch(text));
  for (std::size_t i = 0; i < sessions_.size(); ++i) {
    if (matcher.indexIn(*folded_[i]) >= 0) found.push_back(sessions_[i]);
  }
  return found;
}

void SessionSearch::forget() {
  folded_.clear();
  ++token_;
  isFolding_ = false;
}

void SessionSearch::foldInBackground() {
  if (isFolding_) return;
  isFolding_ = true;
  const quint64 token = ++token_;
  const QPointer<SessionSearch> self(this);
  QThreadPool::globalInstance()->start([self, token, sessions = sessions_] {
    std::vector<Folded> folded;
    folded.reserve(sessions.size());
    for (const auto& session : sessions) {
      folded.push_back(std::make_shared<const QString>(searchableText(*session)));
    }
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [self, token, folded = std::move(folded)]() mutable {
          if (!self || self->token_ != token) return;
          self->isFolding_ = false;
          self->folded_ = std::move(folded);
          Q_EMIT self->ready();
        },
        Qt::QueuedConnection);
  });
}

}  // namespace velun
