// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_source.h"
#include "platform/recording/recording_feed.h"
#include "platform/speech/speech_platform.h"

namespace velun {

/// A sound or video file, captioned as fast as the recognizer can.
class RecordingSource final : public CaptionSource {
  Q_OBJECT

 public:
  /// `decoder` is the installed velun-decoder; `sessionStart` is the time from which the times of
  /// the events are counted. Without drafts, captions come faster. `speech` must outlive the
  /// source.
  RecordingSource(SpeechPlatform& speech, QString decoder, QString path, QString localeID,
                  Instant sessionStart, bool withDrafts);
  ~RecordingSource() override;

  void start() override;
  void stop() override;

 private:
  void handle(const TranscriptionResult& result);
  void reportPosition();
  void end(const std::optional<QString>& error);

  SpeechPlatform& speech_;
  QString decoder_;
  QString path_;
  QString localeID_;
  Instant sessionStart_;
  std::shared_ptr<SpeechInput> input_;
  std::unique_ptr<SpeechRun> run_;
  std::unique_ptr<RecordingFeed> feed_;
  std::optional<double> duration_;
  std::optional<QString> error_;
  bool hasEnded_ = false;
};

}  // namespace velun
