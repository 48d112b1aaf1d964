// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognition_event.h"
#include "captions/speaker_tracker.h"
#include "model/caption_session.h"
#include "platform/foundation/clock.h"
#include "translation/caption_translator.h"

#include <QObject>

namespace velun {

/// A session of one source that nobody edits meanwhile: it grows by finished texts, and its lines
/// are translated in order. A line is settled once it waits for no translation. Main thread.
class TranslatedSession final : public QObject {
  Q_OBJECT

 public:
  /// `session` is empty and tells the start. `target` is the language to translate into; empty:
  /// none. `translation` and `clock` must outlive this object.
  TranslatedSession(CaptionSession session, const QString& localeID, const QString& target,
                    TranslationPlatform& translation, const Clock& clock);

  const CaptionSession& session() const { return session_; }
  void append(const FinalEvent& event);
  void setEnd(Instant end) { session_.endedAt = end; }

  /// How many lines are settled, counted from the first.
  std::size_t settledCount() const { return settledCount_; }
  bool isSettled() const { return settledCount_ == session_.lines.size(); }

 Q_SIGNALS:
  /// More lines are settled.
  void settled();
  /// The first unsettled line cannot be translated, localized; `settled` follows.
  void translationFailed(const QString& message);

 private:
  void settleNext();

  CaptionSession session_;
  const Clock& clock_;
  SpeakerTracker speakers_;
  CaptionTranslator translator_;
  std::size_t settledCount_ = 0;
};

}  // namespace velun
