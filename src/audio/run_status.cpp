// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/run_status.h"

#include "language/localization.h"

#include <chrono>

namespace velun {

namespace {

constexpr std::chrono::seconds kBriefNoticeTime{8};

}  // namespace

void RunStatus::setInterrupted(bool isInterrupted) {
  isInterrupted_ = isInterrupted;
  update();
}

void RunStatus::setMissingDevice(const std::optional<QString>& name) {
  missingDevice_ = name;
  update();
}

void RunStatus::setBehind(bool isBehind) {
  lag_.setBehind(isBehind);
  update();
}

void RunStatus::addSkipped(double seconds) {
  lag_.addSkipped(seconds, clock_.monotonicSeconds());
  update();
}

void RunStatus::advise(const QString& advice) {
  lag_.advise(advice, clock_.monotonicSeconds());
  update();
}

void RunStatus::setNotice(const QString& notice) {
  notice_ = notice.isEmpty() ? std::nullopt : std::optional(notice);
  update();
}

void RunStatus::showBriefly(const QString& notice) {
  briefNotice_ = notice;
  briefNoticeEnd_ = clock_.callAfter(kBriefNoticeTime, [this] {
    briefNotice_.reset();
    update();
  });
  update();
}

void RunStatus::clear() {
  const std::optional<QString> shown = shown_;
  forget();
  shown_ = shown;
  update();
}

void RunStatus::forget() {
  isInterrupted_ = false;
  lag_ = {};
  notice_.reset();
  briefNotice_.reset();
  briefNoticeEnd_.reset();
  nextChange_.reset();
  shown_.reset();
}

std::optional<QString> RunStatus::text(double now) const {
  if (isInterrupted_) {
    return L("The sound system is not responding. Captions will go on when it is back.",
             "사운드 시스템이 응답하지 않습니다. 복구되면 자막이 계속됩니다.");
  }
  if (missingDevice_) {
    return L("“%1” is not connected. Captions will go on when it is back.",
             "‘%1’이(가) 연결되어 있지 않습니다. 다시 연결되면 자막이 계속됩니다.")
        .arg(*missingDevice_);
  }
  if (const std::optional<QString> lag = lag_.text(now)) return lag;
  return briefNotice_ ? briefNotice_ : notice_;
}

void RunStatus::update() {
  const double now = clock_.monotonicSeconds();
  nextChange_.reset();
  if (const std::optional<double> next = lag_.nextChange(now)) {
    const auto delay =
        std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(*next - now));
    nextChange_ = clock_.callAfter(delay, [this] { update(); });
  }
  const std::optional<QString> status = text(now);
  if (status == shown_) return;
  shown_ = status;
  Q_EMIT changed(status);
}

}  // namespace velun
