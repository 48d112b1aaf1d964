// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_source.h"
#include "captions/translated_session.h"

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

  const CaptionSession& session() const { return lines_.session(); }
  /// Why a line could not be translated, localized: of the first of them, if there is one.
  const std::optional<QString>& translationError() const { return translationError_; }
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
  void finishIfComplete();

  TranslatedSession lines_;
  std::unique_ptr<CaptionSource> source_;
  double position_ = 0;
  std::optional<double> duration_;
  std::optional<QString> translationError_;
  bool hasEnded_ = false;
  bool hasFinished_ = false;
  std::optional<QString> error_;
};

}  // namespace velun
