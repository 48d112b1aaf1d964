// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/phrase_finder.h"
#include "platform/speech/helper/phrase_hearing.h"
#include "platform/speech/helper/stream_recognizer.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

namespace velun {

/// Recognizes a recording with libvosk: several phrases at once, on threads of their own. Gives the
/// words of `PhraseRecognizer`, without drafts.
class RecordingRecognizer final : public StreamRecognizer {
 public:
  /// Checks and loads the model. Throws `DamagedFile` and `std::runtime_error`.
  RecordingRecognizer(const vosk::Library& library, const RecognizerSettings& settings);
  ~RecordingRecognizer() override;

  /// Waits while many phrases wait to be heard.
  void accept(std::span<const float> samples) override;
  /// Waits until every phrase was heard.
  void finalize() override;
  /// Also while phrases that have ended are being heard.
  bool isInPhrase() const override;
  std::vector<TranscriptionResult> takeResults() override;

 private:
  struct Phrase {
    std::vector<std::vector<float>> pieces;  ///< for the first hearing
    EndedPhrase ended;
    HeardWords words;
    bool isHeard = false;
    std::exception_ptr failure;
  };

  void collect(PhraseFinder::Step step);
  /// Until no more than so many phrases are not heard.
  void awaitUnheard(std::size_t atMost);
  void work(PhraseHearing& hearing, const std::stop_token& stop);
  std::shared_ptr<Phrase> nextPhrase(const std::stop_token& stop);

  PhraseFinder phrases_;
  QString language_;
  std::vector<std::vector<float>> pieces_;  ///< of the phrase under way

  mutable std::mutex mutex_;
  std::condition_variable_any changed_;
  std::deque<std::shared_ptr<Phrase>> unheard_;  ///< guarded by mutex_; no thread has them
  std::deque<std::shared_ptr<Phrase>> all_;      ///< guarded by mutex_; not taken, in order
  std::size_t unheardCount_ = 0;                 ///< guarded by mutex_; those being heard included
  std::vector<PhraseHearing> hearings_;
  std::vector<std::jthread> threads_;
};

}  // namespace velun
