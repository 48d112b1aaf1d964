// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/local_speech_run.h"
#include "support/manual_clock.h"

namespace velun::test {

/// A run, with what it emitted.
struct ObservedRun {
  void start(const std::vector<SpeechRecognizer>& recognizers) {
    run = std::make_unique<LocalSpeechRun>(recognizers, input, clock);
    QObject::connect(run.get(), &SpeechRun::resultReady, [this](const TranscriptionResult& result) {
      (result.isFinal ? finals : drafts) << result.text;
    });
    QObject::connect(run.get(), &SpeechRun::noticed,
                     [this](const QString& notice) { notices << notice; });
    QObject::connect(run.get(), &SpeechRun::noticedBriefly,
                     [this](const QString& notice) { briefNotices << notice; });
    QObject::connect(run.get(), &LocalSpeechRun::recognizerFailed,
                     [this](const QString& id) { failed << id; });
    QObject::connect(run.get(), &SpeechRun::ended,
                     [this](const std::optional<QString>& error) { ends << error.value_or("-"); });
  }

  ManualClock clock;
  std::shared_ptr<SpeechInput> input = std::make_shared<SpeechInput>();
  QStringList drafts;
  QStringList finals;
  QStringList notices;
  QStringList briefNotices;
  QStringList failed;
  QStringList ends;
  std::unique_ptr<LocalSpeechRun> run;
};

}  // namespace velun::test
