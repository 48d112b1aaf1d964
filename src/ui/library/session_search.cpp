// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_search.h"

#include "model/session_files.h"

#include <QStringMatcher>
#include <utility>

namespace velun {

namespace {

enum class Finding : char { missing, contained };

/// What the file of each session says.
std::vector<Finding> readFindings(const SavedSessions& sessions, const QString& folded,
                                  const std::stop_token& stop) {
  std::vector<QString> paths;
  for (const auto& session : sessions) paths.push_back(session->url.toLocalFile());
  std::vector<Finding> findings(sessions.size());
  const QStringMatcher matcher(folded);
  readSessionFiles(paths, {}, stop, [&](std::size_t i, CaptionSession session) {
    // That of a transcript of an earlier version is not in its file.
    session.title = sessions[i]->summary.title;
    const bool isContained = matcher.indexIn(searchableText(session)) >= 0;
    findings[i] = isContained ? Finding::contained : Finding::missing;
  });
  return findings;
}

}  // namespace

void SessionSearch::setSessions(const SavedSessions& sessions) {
  Findings kept;
  for (const auto& session : sessions) {
    const auto found = findings_.constFind(session.get());
    if (found != findings_.constEnd()) kept.insert(session.get(), *found);
  }
  reading_.cancel();
  findings_ = std::move(kept);
  sessions_ = sessions;
}

SavedSessions SessionSearch::matches(const QString& text) {
  if (text.isEmpty()) {
    forget();
    return sessions_;
  }
  search(foldedForSearch(text));
  const TextSignature signature(folded_);
  SavedSessions found;
  SavedSessions unread;
  for (const auto& session : sessions_) {
    if (!session->signature.mayHold(signature)) continue;
    const auto finding = findings_.constFind(session.get());
    if (finding == findings_.constEnd()) unread.push_back(session);
    if (finding == findings_.constEnd() || *finding) found.push_back(session);
  }
  if (!unread.empty() && !reading_.isRunning()) startReading(unread);
  return found;
}

void SessionSearch::search(const QString& folded) {
  if (folded == folded_) return;
  reading_.cancel();
  // A session without the shorter text does not contain the longer one.
  const bool isLonger = !folded_.isEmpty() && folded.contains(folded_);
  findings_.removeIf([isLonger](const auto& finding) { return !isLonger || finding.value(); });
  folded_ = folded;
}

void SessionSearch::forget() {
  reading_.cancel();
  findings_.clear();
  folded_.clear();
}

void SessionSearch::startReading(const SavedSessions& sessions) {
  reading_.start([sessions, folded = folded_](
                     const std::stop_token& stop) { return readFindings(sessions, folded, stop); },
                 [this, sessions](const std::vector<Finding>& findings) {
                   for (std::size_t i = 0; i < sessions.size(); ++i) {
                     findings_.insert(sessions[i].get(), findings[i] == Finding::contained);
                   }
                   Q_EMIT ready();
                 });
}

}  // namespace velun
