// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/echo_filter.h"
#include "platform/foundation/clock.h"

#include <memory>
#include <QObject>

namespace velun {

/// Passes the events of two engines on, without what loudspeakers brought into the microphone. A
/// finished text of the microphone waits while the computer's text of that time is unfinished, but
/// not for long; it is shown as a draft meanwhile. Main thread.
class EchoRemoval final : public QObject {
  Q_OBJECT

 public:
  /// `clock` must outlive this object.
  explicit EchoRemoval(Clock& clock) : clock_(clock) {}

  /// Another run begins; what waits is dropped.
  void reset();
  void take(const SpeechRecognitionEvent& event);
  /// Passes what waits on: no more comes from the computer.
  void release();

 Q_SIGNALS:
  void passed(const velun::SpeechRecognitionEvent& event);

 private:
  void takeDraft(const DraftEvent& event);
  void takeFinal(const FinalEvent& event);
  bool awaitsComputer(const FinalEvent& event) const;
  void pass(FinalEvent event);
  void showDraft();

  Clock& clock_;
  EchoFilter filter_;
  std::vector<FinalEvent> waiting_;
  QString draft_;  ///< the microphone's, with its echo
  std::unique_ptr<ScheduledCall> end_;
};

}  // namespace velun
