// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/linux/built_in/final_pass.h"

#include "platform/speech/linux/built_in/sphinx_decoder.h"

#include <utility>

namespace velun {

namespace {

// Word errors of 18 % on read books and 24 % with noise 23 dB below, at 0.14 of real time. The
// recognizer's own noise removal helps in noise and hurts in quiet, and wider beams than these
// take longer than the phrase when there is noise.
const SphinxDecoder::Options kOptions = {
    {"-remove_noise", "no"},   {"-maxhmmpf", "3000"},      {"-maxwpf", "10"},
    {"-fwdflatbeam", "1e-72"}, {"-fwdflatwbeam", "1e-36"}, {"-topn", "8"},
    {"-bestpath", "no"},
};

}  // namespace

FinalPass::FinalPass() {
  thread_ = std::thread([this] { run(); });
}

FinalPass::~FinalPass() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_all();
  thread_.join();
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

bool FinalPass::isBusy() const {
  const std::lock_guard lock(mutex_);
  return isBusy_;
}

std::optional<QStringList> FinalPass::take() {
  const std::lock_guard lock(mutex_);
  return takeLocked();
}

std::optional<QStringList> FinalPass::wait() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return !isBusy_ || words_ || error_; });
  return takeLocked();
}

std::optional<QStringList> FinalPass::takeLocked() {
  if (error_) std::rethrow_exception(error_);
  if (words_) isBusy_ = false;
  return std::exchange(words_, std::nullopt);
}

void FinalPass::run() {
  std::unique_lock lock(mutex_, std::defer_lock);
  try {
    SphinxDecoder decoder(kOptions);
    lock.lock();
    while (true) {
      changed_.wait(lock, [this] { return waiting_ || isEnding_; });
      if (isEnding_) return;
      const std::vector<std::int16_t> phrase = *std::exchange(waiting_, std::nullopt);
      const std::uint64_t number = phrase_;
      lock.unlock();
      QStringList words = decoder.decode(phrase);
      lock.lock();
      if (number != phrase_) continue;
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
