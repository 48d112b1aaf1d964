// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_delegate.h"

#include "captions/caption_view_model.h"
#include "platform/foundation/clock.h"
#include "platform/foundation/main_task.h"

#include <QApplication>
#include <QDialog>
#include <QSessionManager>

namespace velun {

namespace {

/// How long a question may stay unanswered after a signal.
constexpr std::chrono::seconds kAnswerTimeout(10);

}  // namespace

AppDelegate::AppDelegate(CaptionViewModel& model, const AppServices& services)
    : coordinator_(model, services),
      model_(model),
      clock_(services.clock),
      logOut_(model, coordinator_.recordings(), coordinator_.ending(), services.clock) {
  connect(&coordinator_, &AppCoordinator::terminationRequested, this,
          &AppDelegate::requestTermination);
  connect(&coordinator_.ending(), &SessionEnding::terminationQuestionReached, this, [this] {
    if (isSignalled_) startDeadline();
  });
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  // The status icon keeps the program alive without windows.
  QApplication::setQuitOnLastWindowClosed(false);
  qApp->installEventFilter(this);
  // Direct: the session manager waits inside the signal.
  connect(qApp, &QGuiApplication::commitDataRequest, this, &AppDelegate::commitData,
          Qt::DirectConnection);
  coordinator_.launch();
}

void AppDelegate::applicationWillTerminate() {
  // The event loop has ended; deliver posted events ourselves: they start tasks and resume waiting
  // ones.
  QCoreApplication::sendPostedEvents();
  coordinator_.recordings().saveProgress();
  model_.abandonEngine();
  model_.translator().configure(false, false, {}, {});
  QCoreApplication::sendPostedEvents();
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
  if (watched != qApp || event->type() != QEvent::Quit) return false;
  // From the session manager or Qt; the program itself never sends it.
  if (logOut_.begin()) {
    startDeadline();
    startTask(this, [this] { return endUnasked(this); });
  } else {
    requestTermination();
  }
  return true;
}

QCoro::Task<> AppDelegate::endUnasked(QPointer<AppDelegate> self) {
  QCoro::Task<> shutdown = self->model_.shutdown();
  co_await shutdown;
  if (!self) co_return;
  if (self->logOut_.takeAgreement()) {
    self->endNow();
  } else {
    // The last words became lines that the user was not asked about.
    self->deadline_.reset();
    self->requestTermination();
  }
}

void AppDelegate::requestTermination() {
  coordinator_.ending().prepareToTerminate([this](bool shouldTerminate) {
    deadline_.reset();
    isSignalled_ = false;
    if (shouldTerminate) finish();
  });
}

void AppDelegate::terminationSignalled() {
  if (isSignalled_) return endNow();
  isSignalled_ = true;
  startDeadline();
  if (!coordinator_.ending().isTerminating()) {
    // Cancel any other open question to make room for the one about quitting.
    if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
  }
  requestTermination();
}

void AppDelegate::startDeadline() {
  deadline_ = clock_.callAfter(kAnswerTimeout, [this] { endNow(); });
}

void AppDelegate::endNow() {
  coordinator_.ending().endNow();
  finish();
}

void AppDelegate::finish() {
  // Leaves all event loops, including the one of an open question.
  QCoreApplication::exit(0);
}

void AppDelegate::commitData(QSessionManager& manager) {
  if (!manager.allowsInteraction()) return logOut_.prepareUnasked();
  // Waiting inside the loop of an open question would deadlock.
  const bool isAsking = coordinator_.ending().isDeciding() && QApplication::activeModalWidget();
  if (!isAsking && logOut_.agree()) {
    manager.release();
  } else {
    // Without release(), which would first report success.
    manager.cancel();
  }
}

}  // namespace velun
