// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/session_ending.h"

#include "captions/caption_view_model.h"
#include "captions/discard_confirmation.h"
#include "captions/recording_confirmation.h"
#include "captions/recording_queue.h"
#include "language/localization.h"
#include "platform/foundation/main_task.h"
#include "platform/foundation/one_shot.h"

#include <utility>

namespace velun {

SessionEnding::SessionEnding(CaptionViewModel& model, const RecordingQueue& recordings,
                             ModalQuestion& question)
    : model_(model), recordings_(recordings), question_(question) {
  connect(&model_, &CaptionViewModel::isRunningChanged, this, [this] {
    if (model_.isRunning()) hasStoppedCaptions_ = false;
  });
}

bool SessionEnding::wantsCaptions() {
  return std::exchange(hasStoppedCaptions_, false) || model_.isRunning();
}

void SessionEnding::newSession() {
  if (isDeciding()) return;
  replacing_ = true;
  startTask(this,
            [this, wasRunning = wantsCaptions()] { return decideNewSession(this, wasRunning); });
}

QCoro::Task<> SessionEnding::decideNewSession(QPointer<SessionEnding> self, bool wasRunning) {
  QCoro::Task<> stopping = stopCaptions(self);
  co_await stopping;
  if (!self || self->ended_) co_return;
  if (self->terminating_) {
    // Quitting was requested meanwhile: ask only its question.
    self->replacing_ = false;
    self->beginTermination(wasRunning);
    co_return;
  }
  const QString title =
      L("Save this session before starting a new one?", "새 세션을 시작하기 전에 저장할까요?");
  QCoro::Task<bool> confirming = confirm(self, title);
  const bool goesOn = co_await confirming;
  if (!self || self->ended_) co_return;
  self->replacing_ = false;
  if (goesOn) {
    self->model_.newSession();
    Q_EMIT self->sessionReplaced();
  }
  if (self->terminating_) {
    // Quitting was requested meanwhile and waited for this decision.
    self->beginTermination(wasRunning);
  } else if (wasRunning) {
    self->model_.start();
  }
}

void SessionEnding::prepareToTerminate(TerminationReply reply) {
  replies_.push_back(std::move(reply));
  if (terminating_) return;
  terminating_ = true;
  if (!replacing_) beginTermination(wantsCaptions());
}

void SessionEnding::beginTermination(bool wasRunning) {
  startTask(this, [this, wasRunning] { return decideTermination(this, wasRunning); });
}

QCoro::Task<> SessionEnding::decideTermination(QPointer<SessionEnding> self, bool wasRunning) {
  QCoro::Task<> stopping = stopCaptions(self);
  co_await stopping;
  if (!self || self->ended_) co_return;
  Q_EMIT self->terminationQuestionReached();
  const QString title =
      L("Save this session before quitting?", "종료하기 전에 이 세션을 저장할까요?");
  bool goesOn = confirmEndingRecordings(self->recordings_, self->question_);
  if (!self || self->ended_) co_return;
  if (goesOn) {
    QCoro::Task<bool> confirming = confirm(self, title);
    goesOn = co_await confirming;
    if (!self || self->ended_) co_return;
  }
  self->terminating_ = false;
  if (!goesOn && wasRunning) self->model_.start();
  self->hasStoppedCaptions_ = goesOn && wasRunning;
  const std::vector<TerminationReply> replies = std::exchange(self->replies_, {});
  for (const TerminationReply& reply : replies) reply(goesOn);
}

void SessionEnding::resumeCaptions() {
  if (!ended_ && std::exchange(hasStoppedCaptions_, false)) model_.start();
}

QCoro::Task<> SessionEnding::stopCaptions(QPointer<SessionEnding> self) {
  QCoro::Task<> shutdown = self->model_.shutdown();
  co_await shutdown;
  if (!self || !self->model_.isSyncing()) co_return;
  const OneShot<bool> synced = self->model_.synced();
  co_await synced;
}

QCoro::Task<bool> SessionEnding::confirm(QPointer<SessionEnding> self, QString title) {
  while (true) {
    const bool goesOn = confirmDiscarding(self->model_, title, self->question_);
    if (!self || self->ended_) co_return false;
    if (!goesOn || !self->model_.isSyncing()) co_return goesOn;
    // Only a file on the disk is saved; a sync that fails leads to the question again.
    const OneShot<bool> synced = self->model_.synced();
    co_await synced;
    if (!self || self->ended_) co_return false;
    if (!self->model_.hasUnsavedSession()) co_return true;
  }
}

void SessionEnding::endNow() {
  ended_ = true;
  model_.persistIfNeeded();
}

}  // namespace velun
