// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/x11_key_grabs.h"

#include "platform/desktop/linux/x11_display.h"

#include <algorithm>
#include <array>
#include <QCoreApplication>
#include <utility>

namespace velun {

namespace {

constexpr std::uint16_t kNumLock = XCB_MOD_MASK_2;
constexpr std::uint16_t kCapsLock = XCB_MOD_MASK_LOCK;
/// The keys work with every state of the locks.
constexpr std::array<std::uint16_t, 4> kLocks = {0, kNumLock, kCapsLock, kNumLock | kCapsLock};
constexpr std::uint16_t kModifiers =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

std::uint16_t maskOf(Qt::KeyboardModifiers modifiers) {
  std::uint16_t mask = 0;
  if (modifiers & Qt::ShiftModifier) mask |= XCB_MOD_MASK_SHIFT;
  if (modifiers & Qt::ControlModifier) mask |= XCB_MOD_MASK_CONTROL;
  if (modifiers & Qt::AltModifier) mask |= XCB_MOD_MASK_1;
  if (modifiers & Qt::MetaModifier) mask |= XCB_MOD_MASK_4;
  return mask;
}

}  // namespace

X11KeyGrabs::X11KeyGrabs(xcb_connection_t* connection)
    : connection_(connection), root_(rootWindow(connection)) {
  QCoreApplication::instance()->installNativeEventFilter(this);
}

X11KeyGrabs::~X11KeyGrabs() {
  QCoreApplication::instance()->removeNativeEventFilter(this);
  ungrabAll();
}

xcb_keysym_t X11KeyGrabs::symbolOf(int key) {
  // The symbols of Latin letters are those of the small ones.
  if (key >= Qt::Key_A && key <= Qt::Key_Z) return xcb_keysym_t(key - Qt::Key_A + 'a');
  if (key >= Qt::Key_Space && key <= Qt::Key_AsciiTilde) return xcb_keysym_t(key);
  if (key >= Qt::Key_F1 && key <= Qt::Key_F35) return xcb_keysym_t(0xffbe + key - Qt::Key_F1);
  static constexpr std::array<std::pair<int, xcb_keysym_t>, 16> others = {{
      {Qt::Key_Backspace, 0xff08},
      {Qt::Key_Tab, 0xff09},
      {Qt::Key_Return, 0xff0d},
      {Qt::Key_Pause, 0xff13},
      {Qt::Key_Escape, 0xff1b},
      {Qt::Key_Home, 0xff50},
      {Qt::Key_Left, 0xff51},
      {Qt::Key_Up, 0xff52},
      {Qt::Key_Right, 0xff53},
      {Qt::Key_Down, 0xff54},
      {Qt::Key_PageUp, 0xff55},
      {Qt::Key_PageDown, 0xff56},
      {Qt::Key_End, 0xff57},
      {Qt::Key_Print, 0xff61},
      {Qt::Key_Insert, 0xff63},
      {Qt::Key_Delete, 0xffff},
  }};
  const auto found = std::ranges::find(others, key, &std::pair<int, xcb_keysym_t>::first);
  return found == others.end() ? xcb_keysym_t(0) : found->second;
}

void X11KeyGrabs::setShortcuts(const std::vector<GlobalShortcut>& shortcuts) {
  if (shortcuts == shortcuts_) return;
  shortcuts_ = shortcuts;
  grabAll();
}

void X11KeyGrabs::grabAll() {
  ungrabAll();
  QStringList taken;
  for (const GlobalShortcut& shortcut : shortcuts_) {
    if (shortcut.keys.isEmpty()) continue;
    const QKeyCombination keys = shortcut.keys[0];
    for (const xcb_keycode_t code : codesOf(symbolOf(keys.key()))) {
      const Grab wanted{shortcut.id, code, maskOf(keys.keyboardModifiers())};
      const auto isSame = [&wanted](const Grab& other) {
        return other.code == wanted.code && other.modifiers == wanted.modifiers;
      };
      if (std::ranges::any_of(grabs_, isSame)) continue;
      if (grab(wanted)) {
        grabs_.push_back(wanted);
      } else if (!taken.contains(shortcut.id)) {
        taken << shortcut.id;
      }
    }
  }
  if (std::exchange(taken_, taken) != taken) Q_EMIT changed();
}

void X11KeyGrabs::ungrabAll() {
  for (const Grab& grab : grabs_) ungrab(grab);
  grabs_.clear();
  xcb_flush(connection_);
}

bool X11KeyGrabs::grab(const Grab& grab) const {
  bool isGranted = true;
  for (const std::uint16_t locks : kLocks) {
    const auto cookie = xcb_grab_key_checked(connection_, 1, root_, grab.modifiers | locks,
                                             grab.code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto error = owned(xcb_request_check(connection_, cookie));
    isGranted = isGranted && !error;
  }
  // Another program may have the key with one state of the locks only.
  if (!isGranted) ungrab(grab);
  return isGranted;
}

void X11KeyGrabs::ungrab(const Grab& grab) const {
  for (const std::uint16_t locks : kLocks) {
    xcb_ungrab_key(connection_, grab.code, root_, grab.modifiers | locks);
  }
}

std::vector<xcb_keycode_t> X11KeyGrabs::codesOf(xcb_keysym_t symbol) const {
  std::vector<xcb_keycode_t> codes;
  if (!symbol) return codes;
  const xcb_setup_t* setup = xcb_get_setup(connection_);
  const auto count = std::uint8_t(setup->max_keycode - setup->min_keycode + 1);
  const auto mapping = owned(xcb_get_keyboard_mapping_reply(
      connection_, xcb_get_keyboard_mapping(connection_, setup->min_keycode, count), nullptr));
  if (!mapping) return codes;
  const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
  const int width = mapping->keysyms_per_keycode;
  for (int i = 0; i < count; ++i) {
    const xcb_keysym_t* first = symbols + std::ptrdiff_t(i) * width;
    // Without and with Shift.
    const xcb_keysym_t* end = first + std::min(width, 2);
    if (std::find(first, end, symbol) != end)
      codes.push_back(xcb_keycode_t(setup->min_keycode + i));
  }
  return codes;
}

bool X11KeyGrabs::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
  if (type != "xcb_generic_event_t") return false;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  switch (event->response_type & 0x7f) {
    case XCB_KEY_PRESS:
      press(*reinterpret_cast<const xcb_key_press_event_t*>(event));
      break;
    case XCB_KEY_RELEASE:
      lastRelease_ = reinterpret_cast<const xcb_key_release_event_t*>(event)->time;
      lastReleased_ = reinterpret_cast<const xcb_key_release_event_t*>(event)->detail;
      break;
    case XCB_MAPPING_NOTIFY:
      // The keys are elsewhere on another keyboard layout.
      QMetaObject::invokeMethod(this, &X11KeyGrabs::grabAll, Qt::QueuedConnection);
      break;
    default:
      break;
  }
  return false;
}

void X11KeyGrabs::press(const xcb_key_press_event_t& event) {
  const bool isRepeated = event.detail == lastReleased_ && event.time == lastRelease_;
  if (event.event != root_ || isRepeated) return;
  const auto isPressed = [&event](const Grab& grab) {
    return grab.code == event.detail && grab.modifiers == (event.state & kModifiers);
  };
  const auto found = std::ranges::find_if(grabs_, isPressed);
  if (found == grabs_.end()) return;
  // Queued: a command may open a dialog inside the event filter.
  QMetaObject::invokeMethod(
      this, [this, id = found->id] { Q_EMIT triggered(id); }, Qt::QueuedConnection);
}

}  // namespace velun
