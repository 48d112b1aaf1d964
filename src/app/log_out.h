// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <QUuid>
#include <utility>

namespace velun {

class CaptionViewModel;
class Clock;
class RecordingQueue;
class ScheduledCall;
class SessionEnding;

/// The end of the user's session as the desktop's session manager announces it. The program agrees
/// first; then the end comes, or another program cancels it, which nobody reports. Main thread.
class LogOut {
 public:
  /// How long after the agreement captions go on if the end has not come.
  static constexpr std::chrono::seconds kResumeDelay{5};

  /// The references must outlive it.
  LogOut(CaptionViewModel& model, RecordingQueue& recordings, SessionEnding& ending, Clock& clock);
  ~LogOut();

  /// An end is announced and nothing may be asked: writes the session and what is captioned of a
  /// recording; both go on meanwhile.
  void prepareUnasked();

  /// An end is announced: stops captions and asks about unsaved lines and recordings. Runs an event
  /// loop until the user has answered. Returns whether the session may end.
  bool agree();

  /// The end has come. Returns `isAgreed()`; captions are not resumed any more.
  bool begin();

  /// Whether the program ends without a question: because nothing may be asked, or because the user
  /// has agreed to lose the lines that there are.
  bool isAgreed() const;

  /// Returns `isAgreed()` and forgets the agreement, which is valid for one end.
  bool takeAgreement();

 private:
  CaptionViewModel& model_;
  RecordingQueue& recordings_;
  SessionEnding& ending_;
  Clock& clock_;
  /// Nothing may be asked at the end that was announced last.
  bool isImposed_ = false;
  /// The lines, as session and count, that the user agreed to lose.
  std::optional<std::pair<QUuid, std::size_t>> agreed_;
  std::unique_ptr<ScheduledCall> resumption_;
};

}  // namespace velun
