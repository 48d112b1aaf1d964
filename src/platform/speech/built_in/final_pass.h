// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>
#include <QStringList>
#include <thread>
#include <vector>

namespace velun {

/// Decodes whole phrases a second time, with a decoder and a thread of its own, so that drafts
/// continue meanwhile. One phrase at a time: a new one cancels the one before. Used on the decode
/// thread.
class FinalPass {
 public:
  FinalPass();
  /// Cancels the phrase and joins the thread.
  ~FinalPass();

  /// Starts decoding a phrase of 16-bit samples at 16 kHz; an earlier one is cancelled.
  void start(std::vector<std::int16_t> phrase);

  /// Cancels the phrase.
  void abandon();

  /// The words of the phrase, once; nullopt until they are complete. Throws `Failure` when the
  /// decoder could not be loaded.
  std::optional<QStringList> take();

  /// Waits for the words; nullopt when no phrase was started, and after `cancel`.
  std::optional<QStringList> wait();

  /// Cancels the phrase and all later ones. Any thread.
  void cancel();

 private:
  void run();
  bool isWanted(std::uint64_t number) const;
  std::optional<QStringList> takeLocked();

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<std::vector<std::int16_t>> waiting_;
  std::optional<QStringList> words_;
  std::exception_ptr error_;
  bool isBusy_ = false;  ///< a phrase was started whose words were not taken
  bool isEnding_ = false;
  /// Identifies the current phrase; results of another one are discarded.
  std::uint64_t phrase_ = 0;
  std::thread thread_;
};

}  // namespace velun
