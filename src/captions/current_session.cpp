// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/current_session.h"

#include "captions/update.h"
#include "model/speaker.h"

#include <utility>

namespace velun {

CurrentSession::CurrentSession(Instant startedAt) {
  session_.startedAt = startedAt;
}

void CurrentSession::reset(Instant startedAt) {
  *this = CurrentSession(startedAt);
}

bool CurrentSession::setTimes(Instant startedAt, const std::optional<Instant>& endedAt) {
  const bool isStartNew = update(session_.startedAt, startedAt);
  return update(session_.endedAt, endedAt) || isStartNew;
}

bool CurrentSession::setTitle(const QString& title) {
  const QString trimmed = title.trimmed();
  return update(session_.title, trimmed.isEmpty() ? defaultSessionTitle() : trimmed);
}

void CurrentSession::append(Line line) {
  indexOfLine_.insert(line.id, lines().size());
  session_.lines.push_back(std::move(line));
  pending_.lineChanged(lines().back());
}

std::optional<std::size_t> CurrentSession::setTranslation(const QUuid& id, const QString& language,
                                                          const QString& text) {
  const auto found = indexOfLine_.constFind(id);
  if (found == indexOfLine_.constEnd()) return std::nullopt;
  const std::size_t index = *found;
  Line& line = session_.lines[index];
  line.translations[language] = text;
  pending_.lineChanged(line);
  transcript_.lineChanged(index);
  return index;
}

std::optional<std::size_t> CurrentSession::correctLine(const QUuid& id, const QString& text) {
  const auto found = indexOfLine_.constFind(id);
  if (found == indexOfLine_.constEnd()) return std::nullopt;
  const std::size_t index = *found;
  session_.lines[index].correct(text);
  transcript_.lineChanged(index);
  return index;
}

std::vector<std::size_t> CurrentSession::renameSpeaker(const QString& from, const QString& to) {
  speakers_.rename(from, to);
  return velun::renameSpeaker(session_.lines, from, to);
}

const QSet<QUuid>& CurrentSession::pendingTranslationIDs(const QString& sourceID,
                                                         const QString& targetID) const {
  return pending_.ids(lines(), sourceID, targetID);
}

const QString& CurrentSession::transcript(TranscriptContent content,
                                          const QString& language) const {
  return transcript_.text(lines(), content, language);
}

}  // namespace velun
