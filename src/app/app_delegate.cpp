// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_delegate.h"

#include "captions/caption_view_model.h"
#include "platform/foundation/clock.h"
#include "platform/foundation/main_task.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QSessionManager>
#include <utility>

namespace velun {

namespace {

/// How long a question may stay unanswered once the program was signalled to end.
constexpr std::chrono::seconds kAnswerTime(10);

/// Which lines a session holds.
std::pair<QUuid, std::size_t> contentOf(const CaptionSession& session) {
  return {session.id, session.lines.size()};
}

}  // namespace

AppDelegate::AppDelegate(CaptionViewModel& model, const AppServices& services)
    : coordinator_(model, services), model_(model), clock_(services.clock) {
  connect(&coordinator_, &AppCoordinator::terminationRequested, this,
          &AppDelegate::requestTermination);
  connect(&coordinator_, &AppCoordinator::terminationQuestionReached, this, [this] {
    if (isSignalled_) startDeadline();
  });
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  // An accessory: it lives in the status item, whatever windows are open.
  QApplication::setQuitOnLastWindowClosed(false);
  qApp->installEventFilter(this);
  // Directly: the session manager waits inside the signal.
  connect(qApp, &QGuiApplication::commitDataRequest, this, &AppDelegate::commitData,
          Qt::DirectConnection);
  coordinator_.launch();
}

void AppDelegate::applicationWillTerminate() {
  // Nobody else hands on any more what is posted: tasks that have not begun yet, and what tells
  // the waiting ones that there is nothing left.
  QCoreApplication::sendPostedEvents();
  model_.abandonEngine();
  model_.translator().configure(false, false, {}, {});
  QCoreApplication::sendPostedEvents();
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
  if (watched != qApp || event->type() != QEvent::Quit) return false;
  // From the session manager or the toolkit; the program itself never sends it.
  // Good for one end: another program may have cancelled the one that it was given for.
  const auto agreed = std::exchange(agreedEnd_, std::nullopt);
  if (std::exchange(isEndImposed_, false)) {
    startDeadline();
    startTask(this, [this] { return endUnasked(this); });
  } else if (agreed == contentOf(model_.session())) {
    finish();
  } else {
    requestTermination();
  }
  return true;
}

QCoro::Task<> AppDelegate::endUnasked(QPointer<AppDelegate> self) {
  QCoro::Task<> shutdown = self->model_.shutdown();
  co_await shutdown;
  if (self) self->endNow();
}

void AppDelegate::requestTermination() {
  coordinator_.prepareToTerminate([this](bool shouldTerminate) {
    deadline_.reset();
    isSignalled_ = false;
    if (shouldTerminate) finish();
  });
}

void AppDelegate::terminationSignalled() {
  if (isSignalled_) return endNow();
  isSignalled_ = true;
  startDeadline();
  if (!coordinator_.isTerminating()) {
    // Whatever else is being asked is answered with "cancel", to make place for the one question.
    if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
  }
  requestTermination();
}

void AppDelegate::startDeadline() {
  deadline_ = clock_.callAfter(kAnswerTime, [this] { endNow(); });
}

void AppDelegate::endNow() {
  coordinator_.endNow();
  finish();
}

void AppDelegate::finish() {
  // Leaves every event loop, that of an open question too.
  QCoreApplication::exit(0);
}

void AppDelegate::commitData(QSessionManager& manager) {
  isEndImposed_ = !manager.allowsInteraction();
  if (isEndImposed_) {
    // The file is good already, should the end come before the captions have been stopped for it.
    model_.persistIfNeeded();
    return;
  }
  // A question that is up already would, waited for from within it, never be answered.
  const bool isAsking = coordinator_.isDeciding() && QApplication::activeModalWidget();
  if (!isAsking && decideTerminationWaiting()) {
    manager.release();
  } else {
    // Not released, which would first tell the manager that all is well.
    manager.cancel();
  }
}

bool AppDelegate::decideTerminationWaiting() {
  QEventLoop waiting;
  bool answer = false;
  coordinator_.prepareToTerminate([&](bool shouldTerminate) {
    answer = shouldTerminate;
    waiting.quit();
  });
  waiting.exec();
  if (answer) agreedEnd_ = contentOf(model_.session());
  return answer;
}

}  // namespace velun
