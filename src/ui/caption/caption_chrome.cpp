// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_chrome.h"

#include <utility>

namespace velun {

namespace {

constexpr std::chrono::milliseconds kHideDelay{1500};
constexpr std::chrono::milliseconds kRestTime{400};

}  // namespace

CaptionChrome::CaptionChrome(Clock& clock, Panel panel) : clock_(clock), panel_(std::move(panel)) {}

void CaptionChrome::setHovering(bool hovering) {
  if (std::exchange(hovering_, hovering) != hovering) update();
}

void CaptionChrome::setMenuTracking(bool menuTracking) {
  if (std::exchange(menuTracking_, menuTracking) != menuTracking) update();
}

void CaptionChrome::setKeyboardInHeader(bool keyboardInHeader) {
  if (std::exchange(keyboardInHeader_, keyboardInHeader) != keyboardInHeader) update();
}

void CaptionChrome::setLocked(bool locked) {
  if (std::exchange(locked_, locked) != locked) update();
}

void CaptionChrome::update() {
  task_.reset();
  if (locked_) return hide();
  if (!hovering_ && !menuTracking_ && !keyboardInHeader_) return hideLater();
  if (showsChrome_) return;
  const bool onlyHovers = !menuTracking_ && !keyboardInHeader_;
  if (onlyHovers && panel_.wouldCoverPointer && panel_.wouldCoverPointer()) {
    task_ = clock_.callAfter(kRestTime, [this] { show(); });
  } else {
    show();
  }
}

void CaptionChrome::show() {
  showsChrome_ = true;
  panel_.setHeaderVisible(true);
}

void CaptionChrome::hideLater() {
  task_ = clock_.callAfter(kHideDelay, [this] {
    if (showsChrome_ && panel_.isPointerInside && panel_.isPointerInside()) {
      hideLater();
    } else {
      hide();
    }
  });
}

void CaptionChrome::hide() {
  if (std::exchange(showsChrome_, false)) panel_.setHeaderVisible(false);
}

}  // namespace velun
