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

/// Hears whole phrases once more, with a decoder and a thread of its own, so that drafts go on
/// meanwhile. One phrase at a time; a new one takes the place of one that was not answered, and
/// work on that one ends soon. Used on the decode worker.
class FinalPass {
 public:
  FinalPass();
  /// Gives up the phrase at work.
  ~FinalPass();

  /// Begins with a phrase of 16-bit samples at 16 kHz; an earlier one is thrown away.
  void start(std::vector<std::int16_t> phrase);

  /// Throws the phrase away.
  void abandon();

  /// The words of the phrase, once; none while it is at work. Throws `Failure` when the decoder
  /// could not be loaded.
  std::optional<QStringList> take();

  /// The same, waiting for them; none when no phrase was started, and after `cancel`.
  std::optional<QStringList> wait();

  /// Gives up for good. Any thread.
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
  /// Names the phrase at work; an answer for another one is thrown away.
  std::uint64_t phrase_ = 0;
  std::thread thread_;
};

}  // namespace velun
