// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_coordinator.h"
#include "app/log_out.h"

#include <memory>

class QSessionManager;

namespace velun {

class ScheduledCall;

/// Owns the coordinator for the whole run and forwards the program's life events to it: launch,
/// signals, the end of the user's session. Main thread.
class AppDelegate final : public QObject {
  Q_OBJECT

 public:
  /// `model` and everything in `services` must outlive the delegate.
  AppDelegate(CaptionViewModel& model, const AppServices& services);
  ~AppDelegate() override;

  AppCoordinator& coordinator() { return coordinator_; }
  LogOut& logOut() { return logOut_; }

  void applicationDidFinishLaunching();
  /// Call it after the event loop: completes pending operations.
  void applicationWillTerminate();

  /// Handles SIGTERM and SIGINT: quits as the user would. A second signal, or a question that stays
  /// unanswered for ten seconds, ends the program.
  void terminationSignalled();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static QCoro::Task<> endUnasked(QPointer<AppDelegate> self);
  void requestTermination();
  void finish();
  void endNow();
  void startDeadline();
  void commitData(QSessionManager& manager);

  AppCoordinator coordinator_;
  CaptionViewModel& model_;
  Clock& clock_;
  bool isSignalled_ = false;
  std::unique_ptr<ScheduledCall> deadline_;
  LogOut logOut_;
};

}  // namespace velun
