// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/echo_removal.h"

#include <algorithm>
#include <QStringList>
#include <utility>

namespace velun {

namespace {

/// The computer's text of the same words is finished sooner.
constexpr std::chrono::milliseconds kMaxWait{2500};

}  // namespace

void EchoRemoval::reset() {
  filter_.reset();
  waiting_.clear();
  draft_.clear();
  end_.reset();
}

void EchoRemoval::take(const SpeechRecognitionEvent& event) {
  if (const auto* draft = std::get_if<DraftEvent>(&event)) {
    takeDraft(*draft);
  } else if (const auto* final = std::get_if<FinalEvent>(&event)) {
    takeFinal(*final);
  } else {
    Q_EMIT passed(event);
  }
}

void EchoRemoval::takeDraft(const DraftEvent& event) {
  if (event.input == AudioInput::microphone) {
    draft_ = event.text;
    showDraft();
    return;
  }
  filter_.setComputerDraft(event.text, clock_.now());
  Q_EMIT passed(event);
  if (event.text.isEmpty()) release();
}

void EchoRemoval::takeFinal(const FinalEvent& event) {
  if (event.input == AudioInput::computer) {
    filter_.addComputer(event);
    Q_EMIT passed(event);
    if (std::ranges::none_of(waiting_, [this](const auto& each) { return awaitsComputer(each); })) {
      release();
    }
    return;
  }
  draft_.clear();
  filter_.draftWithoutEcho(draft_, clock_.now());
  if (!awaitsComputer(event)) {
    pass(event);
    return;
  }
  waiting_.push_back(event);
  showDraft();
  if (!end_) end_ = clock_.callAfter(kMaxWait, [this] { release(); });
}

bool EchoRemoval::awaitsComputer(const FinalEvent& event) const {
  return filter_.isUnfinishedSince(event.spoken ? event.spoken->end : clock_.now());
}

void EchoRemoval::release() {
  end_.reset();
  for (FinalEvent& event : std::exchange(waiting_, {})) pass(std::move(event));
  if (!draft_.isEmpty()) showDraft();
}

void EchoRemoval::pass(FinalEvent event) {
  event.text = filter_.withoutEcho(event, clock_.now());
  if (event.text.isEmpty()) {
    Q_EMIT passed(DraftEvent{{}, event.input});
  } else {
    Q_EMIT passed(event);
  }
}

void EchoRemoval::showDraft() {
  QStringList texts;
  for (const FinalEvent& event : waiting_) texts += filter_.withoutEcho(event, clock_.now());
  texts += filter_.draftWithoutEcho(draft_, clock_.now());
  texts.removeAll(QString());
  Q_EMIT passed(DraftEvent{texts.join(QLatin1Char(' ')), AudioInput::microphone});
}

}  // namespace velun
