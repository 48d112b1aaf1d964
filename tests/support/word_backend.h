// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/speech/speech_recognizer.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <new>
#include <QStringList>
#include <semaphore>

namespace velun::test {

/// The samples of one word, or of silence as long as a word.
inline constexpr std::size_t kWordSamples = 1600;

/// The audio of the words `first` to `last`.
inline std::vector<float> spoken(int first, int last) {
  std::vector<float> samples;
  for (int word = first; word <= last; ++word) {
    samples.insert(samples.end(), kWordSamples, static_cast<float>(word) / 1000);
  }
  return samples;
}

/// Silence as long as `count` words. A phrase ends after five.
inline std::vector<float> pauseOf(int count) {
  return std::vector<float>(kWordSamples * static_cast<std::size_t>(count), 0.0F);
}

/// How the word back ends of one recognizer behave. Shared with the decode threads.
struct WordScript {
  enum class Loading { succeeds, fails, exhaustsMemory };

  std::atomic<Loading> loading = Loading::succeeds;
  /// Loading waits for `mayLoad` or `cancel`.
  std::atomic<bool> isSlowToLoad = false;
  std::counting_semaphore<> mayLoad{0};
  /// Dies when it hears this word, this many times.
  std::atomic<int> fatalWord = 0;
  std::atomic<int> deathsLeft = 1000;
  /// Hears nothing.
  std::atomic<bool> isDeaf = false;
  std::atomic<int> loads = 0;
  std::atomic<int> alive = 0;
};

/// Recognizes the audio of `spoken`. A word is in a draft two words later, as if decoding took that
/// long. A phrase ends after a pause of five words, and in the middle of speech after every word
/// that ends with the digit 9.
class WordBackend final : public RecognizerBackend {
 public:
  WordBackend(QString name, std::shared_ptr<WordScript> script)
      : name_(std::move(name)), script_(std::move(script)) {
    ++script_->alive;
  }
  ~WordBackend() override { --script_->alive; }

  void load() override {
    ++script_->loads;
    if (script_->isSlowToLoad) script_->mayLoad.acquire();
    if (script_->loading == WordScript::Loading::fails) throw Failure("Cannot load");
    if (script_->loading == WordScript::Loading::exhaustsMemory) throw std::bad_alloc();
  }
  void acceptAudio(std::span<const float> samples) override {
    for (std::size_t at = 0; at < samples.size(); at += kWordSamples) {
      hear(static_cast<int>(std::lround(samples[at] * 1000)));
    }
  }
  std::vector<TranscriptionResult> poll() override { return std::exchange(results_, {}); }
  bool expectsResults() const override { return !heard_.empty(); }
  void finalize() override {
    if (heard_.empty()) return;
    results_.push_back({text(heard_.size()), true});
    results_.back().until = seconds(position_);
    heard_.clear();
  }
  void cancel() override { script_->mayLoad.release(); }

 private:
  void hear(int word) {
    ++position_;
    if (word != 0 && word == script_->fatalWord && script_->deathsLeft-- > 0) {
      throw Failure("It died");
    }
    if (script_->isDeaf) return;
    silence_ = word == 0 ? silence_ + 1 : 0;
    if (word != 0) heard_.push_back(word);
    if (heard_.empty()) return;
    const std::size_t undecided = silence_ < 2 ? 2 - static_cast<std::size_t>(silence_) : 0;
    const std::size_t shown = heard_.size() - std::min(heard_.size(), undecided);
    if (silence_ == 5) return finalize();
    if (shown > 0 && heard_[shown - 1] % 10 == 9 && undecided == 2) return endSentence(shown);
    if (shown > 0 && word != 0) results_.push_back({text(shown), false});
  }
  void endSentence(std::size_t count) {
    results_.push_back({text(count), true});
    results_.back().until = seconds(position_ - 2);
    heard_.erase(heard_.begin(), heard_.begin() + static_cast<std::ptrdiff_t>(count));
    results_.push_back({text(1), false});
  }
  QString text(std::size_t count) const {
    QStringList words;
    for (std::size_t i = 0; i < count; ++i) words << name_ + QString::number(heard_[i]);
    return words.join(u' ');
  }
  static double seconds(std::size_t position) {
    return static_cast<double>(position * kWordSamples) / kSpeechSampleRate;
  }

  QString name_;
  std::shared_ptr<WordScript> script_;
  std::vector<int> heard_;
  std::size_t position_ = 0;  ///< in words
  int silence_ = 0;
  std::vector<TranscriptionResult> results_;
};

/// A recognizer whose words begin with `name`, which is also its id and title.
struct WordRecognizer {
  explicit WordRecognizer(QString id) : name(std::move(id)) {}

  SpeechRecognizer recognizer() const {
    return {name, name, [name = name, script = script]() -> std::unique_ptr<RecognizerBackend> {
              return std::make_unique<WordBackend>(name, script);
            }};
  }

  QString name;
  std::shared_ptr<WordScript> script = std::make_shared<WordScript>();
};

}  // namespace velun::test
