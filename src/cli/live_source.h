// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognizing.h"
#include "captions/caption_source.h"

#include <memory>
#include <QPointer>

namespace velun {

/// The sound of an output, of a microphone or of both.
class LiveSource final : public CaptionSource {
  Q_OBJECT

 public:
  LiveSource(std::unique_ptr<SpeechRecognizing> engine, QString localeID, CaptionTargets targets);

  void start() override;
  void stop() override;

 private:
  static QCoro::Task<> run(QPointer<LiveSource> self);
  static QCoro::Task<> end(QPointer<LiveSource> self);

  std::unique_ptr<SpeechRecognizing> engine_;
  QString localeID_;
  CaptionTargets targets_;
  std::stop_source stop_;
  std::optional<QString> error_;
  bool isStopping_ = false;
};

}  // namespace velun
