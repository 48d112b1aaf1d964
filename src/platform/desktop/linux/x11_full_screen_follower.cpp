// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/x11_full_screen_follower.h"

#include "platform/desktop/linux/x11_display.h"

#include <algorithm>
#include <QCoreApplication>
#include <QGuiApplication>
#include <utility>
#include <vector>

namespace velun {

namespace {

constexpr std::uint32_t kMaxValues = 1024;
/// Openbox overlooks the request while it gives the other window the keyboard.
constexpr int kMaxAttempts = 4;
constexpr std::uint32_t kIconicState = 3;  // of WM_STATE

std::vector<std::uint32_t> readValues(xcb_connection_t* connection, xcb_window_t window,
                                      xcb_atom_t property) {
  const auto cookie =
      xcb_get_property(connection, false, window, property, XCB_ATOM_ANY, 0, kMaxValues);
  const auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + reply->value_len};
}

std::uint32_t firstValue(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property) {
  const auto values = readValues(connection, window, property);
  return values.empty() ? 0 : values.front();
}

bool isOurs(xcb_window_t window) {
  return std::ranges::any_of(QGuiApplication::allWindows(), [window](QWindow* own) {
    return own->handle() && static_cast<xcb_window_t>(own->winId()) == window;
  });
}

}  // namespace

X11FullScreenFollower::X11FullScreenFollower(xcb_connection_t* connection)
    : connection_(connection),
      active_(atomNamed(connection, "_NET_ACTIVE_WINDOW")),
      states_(atomNamed(connection, "_NET_WM_STATE")),
      fullScreen_(atomNamed(connection, "_NET_WM_STATE_FULLSCREEN")),
      stacking_(atomNamed(connection, "_NET_CLIENT_LIST_STACKING")),
      type_(atomNamed(connection, "_NET_WM_WINDOW_TYPE")),
      normal_(atomNamed(connection, "_NET_WM_WINDOW_TYPE_NORMAL")),
      utility_(atomNamed(connection, "_NET_WM_WINDOW_TYPE_UTILITY")),
      iconState_(atomNamed(connection, "WM_STATE")) {
  // Qt watches the root window's properties.
  QCoreApplication::instance()->installNativeEventFilter(this);
}

X11FullScreenFollower::~X11FullScreenFollower() {
  QCoreApplication::instance()->removeNativeEventFilter(this);
}

void X11FullScreenFollower::follow(QWindow& window, bool above) {
  // A show has brought back Qt's own value.
  const auto id = static_cast<xcb_window_t>(window.winId());
  if (firstValue(connection_, id, XCB_ATOM_WM_TRANSIENT_FOR) != owner_) owner_ = XCB_WINDOW_NONE;
  window_ = &window;
  above_ = above;
  if (!above) {
    release();
    return;
  }
  update();
}

bool X11FullScreenFollower::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t" || !above_) return false;
  const auto* event = static_cast<xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return false;
  const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
  if (change->atom == active_ || change->atom == stacking_ ||
      (change->atom == states_ && change->window == watched_)) {
    QMetaObject::invokeMethod(this, &X11FullScreenFollower::update, Qt::QueuedConnection);
  }
  return false;
}

void X11FullScreenFollower::update() {
  if (!window_ || !window_->handle() || !window_->isVisible() || !above_) return;
  const xcb_window_t active = activeWindow();
  // A click on the window itself does not end the other's full screen.
  const bool isItself = active == static_cast<xcb_window_t>(window_->winId());
  const xcb_window_t candidate = isItself ? owner_ : active;
  if (candidate != XCB_WINDOW_NONE && !isOurs(candidate)) watch(candidate);
  if (candidate != XCB_WINDOW_NONE && !isOurs(candidate) && isFullScreen(candidate)) {
    attach(candidate);
  } else {
    release();
  }
}

xcb_window_t X11FullScreenFollower::activeWindow() const {
  return firstValue(connection_, rootWindow(connection_), active_);
}

bool X11FullScreenFollower::isFullScreen(xcb_window_t window) const {
  return std::ranges::count(readValues(connection_, window, states_), fullScreen_) > 0;
}

bool X11FullScreenFollower::isIconified(xcb_window_t window) const {
  return firstValue(connection_, window, iconState_) == kIconicState;
}

void X11FullScreenFollower::watch(xcb_window_t window) {
  if (std::exchange(watched_, window) == window) return;
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &events);
  xcb_flush(connection_);
}

void X11FullScreenFollower::attach(xcb_window_t owner) {
  if (owner_ != owner) {
    const auto id = static_cast<xcb_window_t>(window_->winId());
    if (owner_ == XCB_WINDOW_NONE) {
      before_ = firstValue(connection_, id, XCB_ATOM_WM_TRANSIENT_FOR);
    }
    owner_ = owner;
    attempts_ = 0;
    writeType(normal_, utility_);
  } else if (!isBelowOwner() || attempts_ == kMaxAttempts) {
    return;
  }
  ++attempts_;
  write(owner);
}

bool X11FullScreenFollower::isBelowOwner() const {
  const auto windows = readValues(connection_, rootWindow(connection_), stacking_);
  const auto itself = std::ranges::find(windows, static_cast<xcb_window_t>(window_->winId()));
  return std::find(itself, windows.end(), owner_) != windows.end();
}

void X11FullScreenFollower::write(xcb_window_t owner) {
  const auto id = static_cast<xcb_window_t>(window_->winId());
  // The same value once more would be no change.
  xcb_delete_property(connection_, id, XCB_ATOM_WM_TRANSIENT_FOR);
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_TRANSIENT_FOR,
                      XCB_ATOM_WINDOW, 32, 1, &owner);
  xcb_flush(connection_);
}

void X11FullScreenFollower::writeType(xcb_atom_t from, xcb_atom_t to) {
  const auto id = static_cast<xcb_window_t>(window_->winId());
  std::vector<std::uint32_t> types = readValues(connection_, id, type_);
  std::ranges::replace(types, from, to);
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, id, type_, XCB_ATOM_ATOM, 32,
                      static_cast<std::uint32_t>(types.size()), types.data());
}

void X11FullScreenFollower::release() {
  if (std::exchange(owner_, XCB_WINDOW_NONE) == XCB_WINDOW_NONE || !window_) return;
  const auto id = static_cast<xcb_window_t>(window_->winId());
  if (before_ == XCB_WINDOW_NONE) {
    xcb_delete_property(connection_, id, XCB_ATOM_WM_TRANSIENT_FOR);
  } else {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_TRANSIENT_FOR,
                        XCB_ATOM_WINDOW, 32, 1, &before_);
  }
  writeType(utility_, normal_);
  // It may have been iconified together with its owner.
  if (isIconified(id)) xcb_map_window(connection_, id);
  xcb_flush(connection_);
}

}  // namespace velun
