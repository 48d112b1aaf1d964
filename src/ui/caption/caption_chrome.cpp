// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_chrome.h"

#include <utility>

namespace velun {

namespace {

constexpr std::chrono::milliseconds kHideDelay{1500};

}  // namespace

CaptionChrome::CaptionChrome(Clock& clock, std::function<void(bool)> setHeaderVisible,
                             std::function<bool()> isPointerInside)
    : clock_(clock),
      setHeaderVisible_(std::move(setHeaderVisible)),
      isPointerInside_(std::move(isPointerInside)) {}

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
  hideTask_.reset();
  if (locked_) {
    hide();
  } else if (!hovering_ && !menuTracking_ && !keyboardInHeader_) {
    hideLater();
  } else if (!showsChrome_) {
    showsChrome_ = true;
    setHeaderVisible_(true);
  }
}

void CaptionChrome::hideLater() {
  hideTask_ = clock_.callAfter(kHideDelay, [this] {
    if (showsChrome_ && isPointerInside_ && isPointerInside_()) {
      hideLater();
    } else {
      hide();
    }
  });
}

void CaptionChrome::hide() {
  if (std::exchange(showsChrome_, false)) setHeaderVisible_(false);
}

}  // namespace velun
