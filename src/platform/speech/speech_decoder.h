// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/speech/audio_backlog.h"
#include "platform/speech/recognizer_backend.h"
#include "platform/speech/run_signals.h"
#include "platform/speech/source_times.h"
#include "platform/speech/speech_input.h"
#include "platform/speech/unfinished_audio.h"
#include "platform/speech/voice_printer.h"

#include <atomic>
#include <memory>

namespace velun {

/// Decodes the audio of a run with one recognizer after the other. Times of results count from the
/// beginning of the run. Every operation that takes a recognizer throws what that throws; the audio
/// whose words are not final is then given to the next one. One thread at a time.
class SpeechDecoder {
 public:
  /// `isCancelled`, `clock`, `runSignals` and `voices` must outlive the decoder. Final results get
  /// a voice from `voices`, which may be null.
  SpeechDecoder(std::shared_ptr<SpeechInput> input, const Clock& clock,
                const std::atomic<bool>& isCancelled, const RunSignals& runSignals,
                VoicePrinter* voices = nullptr);

  /// The first call for a loaded recognizer: decodes the audio that the one before left.
  void begin(RecognizerBackend& backend);

  /// Waits for audio or an interrupt of the input, decodes, and delivers results. False at the end
  /// of the input, after the last results.
  bool decodeNext(RecognizerBackend& backend);

  /// Finalizes the audio that is waiting now.
  void finalizePending(RecognizerBackend& backend);

  /// The recognizer failed: delivers its earlier results.
  void endFailed(RecognizerBackend& backend);

  /// How many recognizers failed since the last final result.
  int failuresInPhrase() const { return failuresInPhrase_; }

  /// The draft becomes final, and its audio is not decoded again.
  void finalizeDraft();

  /// Whether another recognizer can take over now. It decodes what is not final yet, so no word is
  /// lost or shown twice. Only between phrases, unless it `isUrgent`: then also in speech that goes
  /// on after a final result.
  bool canChangeRecognizer(bool isUrgent) const;

 private:
  void decodeAgain(RecognizerBackend& backend);
  void accept(RecognizerBackend& backend, const SpeechSamples& input);
  void acceptSilence(RecognizerBackend& backend, double now);
  void limitBacklog(const RecognizerBackend& backend);
  void deliverResults(RecognizerBackend& backend, bool withDrafts = true);
  std::optional<SpokenSpan> audioSpan(const TranscriptionResult& result) const;
  std::optional<SpokenSpan> spoken(const TranscriptionResult& result) const;
  std::optional<VoicePrint> voice(const TranscriptionResult& result);
  bool hasTwoVoices(const TranscriptionResult& result);
  void finalize(RecognizerBackend& backend);
  void dropOutdatedDraft(const RecognizerBackend& backend);

  std::shared_ptr<SpeechInput> input_;
  const Clock& clock_;
  const std::atomic<bool>& isCancelled_;
  const RunSignals& signals_;
  VoicePrinter* voices_;  ///< null if voices are not wanted, or not any more
  AudioBacklog backlog_;
  UnfinishedAudio audio_;
  SourceTimes times_;
  double spokenFrom_ = 0;      ///< where words that are not final can begin, in the run’s audio
  TranscriptionResult draft_;  ///< the last one; its text is empty between phrases
  bool isDraftOutdated_ = false;  ///< it is of a recognizer that was replaced
  bool hasNewFinal_ = false;      ///< the last poll gave a final result whose end is known
  bool wasCut_ = false;           ///< the last final result ended without a pause
  int failuresInPhrase_ = 0;
  double begin_ = 0;  ///< where the recognizer’s audio begins, in seconds of the run’s audio
  /// In the clock's monotonic seconds.
  double lastAudio_ = 0;
  double decodedUntil_ = 0;
};

}  // namespace velun
