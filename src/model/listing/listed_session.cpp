// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/listed_session.h"

#include "model/listing/folded_text.h"
#include "model/session_store.h"

#include <utility>

namespace velun {

namespace {

/// Enough for the width of a sidebar.
constexpr qsizetype kFirstWordsLength = 200;

std::vector<QString> languagesOf(const CaptionSession& session) {
  std::set<QString> languages;
  // Lines that follow each other are mostly in one language.
  QString last;
  for (const Line& line : session.lines) {
    if (!line.sourceLanguage || *line.sourceLanguage == last) continue;
    last = *line.sourceLanguage;
    languages.insert(last);
  }
  return {languages.begin(), languages.end()};
}

}  // namespace

SessionSummary summaryOf(const CaptionSession& session) {
  SessionSummary summary{.title = session.title,
                         .startedAt = session.startedAt,
                         .endedAt = session.endedAt,
                         .lineCount = session.lines.size(),
                         .hasTranslations = session.hasTranslations(),
                         .firstWords = {},
                         .languages = languagesOf(session),
                         .inputs = {}};
  if (!session.lines.empty()) summary.firstWords = session.lines[0].text.left(kFirstWordsLength);
  for (const Line& line : session.lines) {
    if (line.input) summary.inputs.insert(*line.input);
  }
  return summary;
}

std::shared_ptr<const ListedSession> listed(const QUrl& url, const CaptionSession& session,
                                            const std::optional<FileStamp>& stamp) {
  return std::make_shared<const ListedSession>(
      ListedSession{url, summaryOf(session), TextSignature(searchableText(session)), stamp});
}

QString searchableText(const CaptionSession& session) {
  return foldedForSearch(session.title + QLatin1Char('\n') +
                         session.transcript(TranscriptContent::both, std::nullopt));
}

bool isBefore(const std::shared_ptr<const ListedSession>& left,
              const std::shared_ptr<const ListedSession>& right) {
  const SessionSummary& leftSummary = left->summary;
  const SessionSummary& rightSummary = right->summary;
  if (leftSummary.startedAt != rightSummary.startedAt) {
    return leftSummary.startedAt > rightSummary.startedAt;
  }
  const QString leftName = left->url.fileName();
  const QString rightName = right->url.fileName();
  if (leftName != rightName) return leftName < rightName;
  return left->url.path() < right->url.path();
}

}  // namespace velun
