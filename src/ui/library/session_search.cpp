// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_search.h"

#include <QCoreApplication>
#include <QHash>
#include <QPointer>
#include <QStringMatcher>
#include <QThreadPool>
#include <unicode/unistr.h>

namespace velun {

QString foldedForSearch(const QString& text) {
  // The toolkit folds letter by letter; only full folding makes "ß" and "SS" the same.
  icu::UnicodeString folded(false, text.utf16(), static_cast<std::int32_t>(text.size()));
  folded.foldCase();
  return QString::fromUtf16(folded.getBuffer(), folded.length());
}

std::vector<TextRange> matchesIn(const QString& text, const QString& search, std::size_t limit) {
  const QString needle = foldedForSearch(search);
  if (needle.isEmpty()) return {};
  QString folded = foldedForSearch(text);
  // Folding can lengthen a text ("ß" to "ss"); then each folded unit has to remember where it came
  // from.
  std::vector<qsizetype> origin;
  if (folded.size() != text.size()) {
    folded.clear();
    for (qsizetype i = 0; i < text.size();) {
      const qsizetype length = text[i].isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
      folded += foldedForSearch(text.mid(i, length));
      origin.resize(static_cast<std::size_t>(folded.size()), i);
      i += length;
    }
    origin.push_back(text.size());
  }
  const auto originOf = [&origin](qsizetype at) {
    return origin.empty() ? at : origin[static_cast<std::size_t>(at)];
  };
  std::vector<TextRange> found;
  const QStringMatcher matcher(needle);
  for (qsizetype at = matcher.indexIn(folded); at >= 0 && found.size() < limit;
       at = matcher.indexIn(folded, at + needle.size())) {
    const qsizetype first = originOf(at);
    const qsizetype last = originOf(at + needle.size());
    found.push_back({first, last - first});
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
