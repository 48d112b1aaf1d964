// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/translated_session.h"

#include "captions/finished_lines.h"

#include <utility>

namespace velun {

TranslatedSession::TranslatedSession(CaptionSession session, const QString& localeID,
                                     const QString& target, TranslationPlatform& translation,
                                     const Clock& clock)
    : session_(std::move(session)), clock_(clock), translator_(translation, session_.lines) {
  connect(&translator_, &CaptionTranslator::translated, this,
          [this](const QUuid&, const QString& language, const QString& text) {
            session_.lines[settledCount_].translations[language] = text;
            settleNext();
          });
  connect(&translator_, &CaptionTranslator::failed, this, [this](const QString& message) {
    Q_EMIT translationFailed(message);
    settleNext();
  });
  translator_.configure(!target.isEmpty(), true, localeID, target);
}

void TranslatedSession::append(const FinalEvent& event) {
  std::vector<Line> lines = finishedLines(event, clock_.now(), session_.startedAt, speakers_);
  for (Line& line : lines) {
    // When it was said: a recording is captioned faster than it was spoken.
    if (line.end) line.time = session_.startedAt + *line.end;
    session_.lines.push_back(std::move(line));
  }
  translator_.linesAppended();
  if (translator_.isActive() || isSettled()) return;
  settledCount_ = session_.lines.size();
  Q_EMIT settled();
}

void TranslatedSession::settleNext() {
  ++settledCount_;
  Q_EMIT settled();
}

}  // namespace velun
