// SPDX-License-Identifier: GPL-3.0-or-later
// Recognition events and translations on their way into the session.
#include "captions/caption_view_model.h"
#include "platform/foundation/sentences.h"

#include <utility>
#include <variant>

namespace velun {

void CaptionViewModel::observeEngine() {
  connect(recognition_.get(), &SpeechRecognizing::eventOccurred, this,
          [this](const SpeechRecognitionEvent& event) {
            std::visit([this](const auto& happened) { handle(happened); }, event);
          });
}

void CaptionViewModel::observeTranslator() {
  translator_.lines = [this]() -> const std::vector<Line>& {
    return lines();
  };
  translator_.lineWithID = [this](const QUuid& id) {
    return lineWithID(id);
  };
  translator_.onTranslation = [this](const QUuid& id, const QString& language,
                                     const QString& text) {
    translated(id, language, text);
  };
  translator_.onError = [this](const std::optional<QString>& message) {
    assign(translationStatus_, message, &CaptionViewModel::translationStatusChanged);
  };
}

void CaptionViewModel::handle(const DraftEvent& event) {
  assign(volatileText_, event.text, &CaptionViewModel::volatileTextChanged);
}

void CaptionViewModel::handle(const FinalEvent& event) {
  assign(volatileText_, QString(), &CaptionViewModel::volatileTextChanged);
  const std::size_t first = lines().size();
  for (const QString& sentence : sentences(event.text, event.sourceID)) {
    const QString text = sentence.trimmed();
    if (!text.isEmpty()) appendLine(text, event);
  }
  if (lines().size() > first) Q_EMIT sessionChanged();
  persistIfNeeded();
}

void CaptionViewModel::handle(const StatusEvent& event) {
  assign(status_, event.text, &CaptionViewModel::statusChanged);
}

void CaptionViewModel::handle(const FailureEvent& event) {
  assign(status_, event.message, &CaptionViewModel::statusChanged);
  stop();
}

void CaptionViewModel::appendLine(const QString& text, const FinalEvent& event) {
  Line line;
  line.time = clock_.now();
  line.text = text;
  line.sourceLanguage = event.sourceID;
  line.input = event.input;
  indexOfLine_.insert(line.id, lines().size());
  session_.lines.push_back(std::move(line));
  pending_.lineChanged(lines().back());
  translator_.enqueue(lines().back().id);
}

const Line* CaptionViewModel::lineWithID(const QUuid& id) const {
  const auto found = indexOfLine_.constFind(id);
  return found == indexOfLine_.constEnd() ? nullptr : &lines()[*found];
}

void CaptionViewModel::translated(const QUuid& id, const QString& language, const QString& text) {
  const auto found = indexOfLine_.constFind(id);
  if (found == indexOfLine_.constEnd()) return;
  const std::size_t index = *found;
  Line& line = session_.lines[index];
  line.translations[language] = text;
  pending_.lineChanged(line);
  transcript_.lineChanged(index);
  encoder_.lineChanged(index);
  Q_EMIT translationChanged(static_cast<int>(index));
  Q_EMIT sessionChanged();
  persistIfNeeded();
}

}  // namespace velun
