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

bool CurrentSession::setInputNames(const QString& computer, const QString& microphone) {
  const bool isComputerNew = update(session_.computerName, std::optional(computer));
  if (!update(session_.microphoneName, std::optional(microphone)) && !isComputerNew) return false;
  transcript_.lineChanged(0);
  return true;
}

std::size_t CurrentSession::insertBySpeech(Line line, std::size_t first) {
  std::vector<Line>& all = session_.lines;
  std::size_t index = all.size();
  const auto wasSaidLater = [&line](const Line& other) {
    return line.start && other.start && other.input != line.input && *other.start > *line.start;
  };
  while (index > first && wasSaidLater(all[index - 1])) --index;
  all.insert(all.begin() + static_cast<std::ptrdiff_t>(index), std::move(line));
  for (std::size_t i = index; i < all.size(); ++i) indexOfLine_.insert(all[i].id, i);
  pending_.lineChanged(all[index]);
  transcript_.lineChanged(index);
  return index;
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
  return transcript_.text(session_, content, language);
}

}  // namespace velun
