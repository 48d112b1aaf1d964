// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_source.h"
#include "captions/speaker_tracker.h"
#include "model/caption_session.h"
#include "platform/foundation/clock.h"
#include "translation/caption_translator.h"

#include <memory>
#include <optional>
#include <QObject>

namespace velun {

/// One recording that becomes a session, with translations. Destroying it ends the work. Main
/// thread.
class RecordingCaptions final : public QObject {
  Q_OBJECT

 public:
  /// `session` is empty and tells the start. `source` is not started yet. `target` is the language
  /// to translate into; empty: none. `translation` and `clock` must outlive this object.
  RecordingCaptions(CaptionSession session, std::unique_ptr<CaptionSource> source,
                    const QString& localeID, const QString& target,
                    TranslationPlatform& translation, const Clock& clock);

  void start() { source_->start(); }

  const CaptionSession& session() const { return session_; }
  /// How far the recording is captioned, and its length if it tells, in seconds.
  double position() const { return position_; }
  const std::optional<double>& duration() const { return duration_; }

 Q_SIGNALS:
  void advanced();
  /// The session is complete, or why not, localized. The last signal.
  void finished(const std::optional<QString>& error);

 private:
  void handle(const SpeechRecognitionEvent& event);
  void sourceEnded(const std::optional<QString>& error);
  void settle();

  CaptionSession session_;
  SpeakerTracker speakers_;
  std::unique_ptr<CaptionSource> source_;
  const Clock& clock_;
  CaptionTranslator translator_;
  double position_ = 0;
  std::optional<double> duration_;
  /// How many lines wait for no translation any more.
  std::size_t settled_ = 0;
  bool hasEnded_ = false;
  bool hasFinished_ = false;
  std::optional<QString> error_;
};

}  // namespace velun
