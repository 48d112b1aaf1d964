// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/log_out.h"

#include "app/session_ending.h"
#include "captions/caption_view_model.h"
#include "captions/recording_queue.h"
#include "platform/foundation/clock.h"

#include <QEventLoop>

namespace velun {

namespace {

/// Identifies the lines of a session.
std::pair<QUuid, std::size_t> contentOf(const CaptionSession& session) {
  return {session.id, session.lines.size()};
}

}  // namespace

LogOut::LogOut(CaptionViewModel& model, RecordingQueue& recordings, SessionEnding& ending,
               Clock& clock)
    : model_(model), recordings_(recordings), ending_(ending), clock_(clock) {}

LogOut::~LogOut() = default;

void LogOut::prepareUnasked() {
  isImposed_ = true;
  // The file is complete even if the process ends before captions have stopped.
  model_.persistIfNeeded();
  recordings_.saveProgress();
}

bool LogOut::agree() {
  isImposed_ = false;
  agreed_.reset();
  resumption_.reset();
  QEventLoop waiting;
  bool answer = false;
  ending_.prepareToTerminate([&](bool shouldTerminate) {
    answer = shouldTerminate;
    waiting.quit();
  });
  waiting.exec();
  if (answer) {
    agreed_ = contentOf(model_.session());
    // Other programs may still be asking, so the end may come after this.
    resumption_ = clock_.callAfter(kResumeDelay, [this] { ending_.resumeCaptions(); });
  }
  return answer;
}

bool LogOut::begin() {
  resumption_.reset();
  return isAgreed() || takeAgreement();
}

bool LogOut::isAgreed() const {
  return isImposed_ || agreed_ == contentOf(model_.session());
}

bool LogOut::takeAgreement() {
  const bool isAgreed = this->isAgreed();
  isImposed_ = false;
  agreed_.reset();
  return isAgreed;
}

}  // namespace velun
