// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/final_pass.h"

#include "platform/speech/built_in/phrase_decoder.h"

#include <utility>

namespace velun {

FinalPass::FinalPass() {
  thread_ = std::thread([this] { run(); });
}

FinalPass::~FinalPass() {
  cancel();
  thread_.join();
}

void FinalPass::cancel() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_all();
}

void FinalPass::start(std::vector<std::int16_t> phrase) {
  {
    const std::lock_guard lock(mutex_);
    waiting_ = std::move(phrase);
    words_.reset();
    isBusy_ = true;
    ++phrase_;
  }
  changed_.notify_all();
}

void FinalPass::abandon() {
  const std::lock_guard lock(mutex_);
  waiting_.reset();
  words_.reset();
  isBusy_ = false;
  ++phrase_;
}

std::optional<QStringList> FinalPass::take() {
  const std::lock_guard lock(mutex_);
  return takeLocked();
}

std::optional<QStringList> FinalPass::wait() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return !isBusy_ || words_ || error_ || isEnding_; });
  return takeLocked();
}

std::optional<QStringList> FinalPass::takeLocked() {
  if (error_) std::rethrow_exception(error_);
  if (words_) isBusy_ = false;
  return std::exchange(words_, std::nullopt);
}

bool FinalPass::isWanted(std::uint64_t number) const {
  const std::lock_guard lock(mutex_);
  return number == phrase_ && !isEnding_;
}

void FinalPass::run() {
  std::unique_lock lock(mutex_, std::defer_lock);
  try {
    PhraseDecoder decoder;
    lock.lock();
    while (true) {
      changed_.wait(lock, [this] { return waiting_ || isEnding_; });
      if (isEnding_) return;
      const std::vector<std::int16_t> phrase = *std::exchange(waiting_, std::nullopt);
      const std::uint64_t number = phrase_;
      lock.unlock();
      std::optional<QStringList> words =
          decoder.decode(phrase, [this, number] { return isWanted(number); });
      lock.lock();
      if (!words || number != phrase_ || isEnding_) continue;
      words_ = std::move(words);
      changed_.notify_all();
    }
  } catch (const std::exception&) {
    if (!lock.owns_lock()) lock.lock();
    error_ = std::current_exception();
    changed_.notify_all();
  }
}

}  // namespace velun
