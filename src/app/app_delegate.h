// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_coordinator.h"

#include <memory>
#include <optional>

class QSessionManager;

namespace velun {

class ScheduledCall;

/// Holds the coordinator for the whole run and hands it the events of the program's life: launch,
/// signals, the end of the user's session. Main thread.
class AppDelegate final : public QObject {
  Q_OBJECT

 public:
  /// `model` and everything in `services` must outlive the delegate.
  AppDelegate(CaptionViewModel& model, const AppServices& services);
  ~AppDelegate() override;

  AppCoordinator& coordinator() { return coordinator_; }

  void applicationDidFinishLaunching();
  /// After the event loop: ends what still waits for something to do.
  void applicationWillTerminate();

  /// SIGTERM or SIGINT: quits as the user would; a second one, or ten seconds in which the question
  /// stays unanswered, ends the program.
  void terminationSignalled();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static QCoro::Task<> endUnasked(QPointer<AppDelegate> self);
  void requestTermination();
  void finish();
  void endNow();
  void startDeadline();
  void commitData(QSessionManager& manager);
  bool decideTerminationWaiting();

  AppCoordinator coordinator_;
  CaptionViewModel& model_;
  Clock& clock_;
  bool isSignalled_ = false;
  std::unique_ptr<ScheduledCall> deadline_;
  /// The end that the session manager announced last allowed no question.
  bool isEndImposed_ = false;
  /// The lines that the user has agreed to leave behind, at the end of a session.
  std::optional<std::pair<QUuid, std::size_t>> agreedEnd_;
};

}  // namespace velun
