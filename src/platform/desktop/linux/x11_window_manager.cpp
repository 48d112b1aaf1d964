// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/x11_window_manager.h"

#include "platform/desktop/linux/x11_display.h"

#include <algorithm>
#include <QRegion>
#include <QWindow>

namespace velun {

namespace {

constexpr std::uint32_t kAllDesktops = 0xFFFFFFFF;
// _NET_WM_STATE: what to do, and that an application asks.
constexpr std::uint32_t kRemove = 0;
constexpr std::uint32_t kAdd = 1;
constexpr std::uint32_t kFromApplication = 1;

const char kWindowType[] = "_NET_WM_WINDOW_TYPE";
const char kCriticalType[] = "_KDE_NET_WM_WINDOW_TYPE_CRITICAL_NOTIFICATION";
const char kBlur[] = "_KDE_NET_WM_BLUR_BEHIND_REGION";

// The id of a QWidget can be out of date; the window's never is.
xcb_window_t idOf(const QWindow& window) {
  return static_cast<xcb_window_t>(window.winId());
}

}  // namespace

X11WindowManager::X11WindowManager(xcb_connection_t* connection)
    : connection_(connection), root_(rootWindow(connection)) {}

xcb_atom_t X11WindowManager::atom(const char* name) const {
  return atomNamed(connection_, name);
}

QByteArray X11WindowManager::name() const {
  const auto check = longProperty(connection_, root_, atom("_NET_SUPPORTING_WM_CHECK"));
  if (check.empty()) return {};
  const auto cookie = xcb_get_property(connection_, 0, check[0], atom("_NET_WM_NAME"),
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, 64);
  const auto reply = owned(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply) return {};
  return QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                    xcb_get_property_value_length(reply.get()));
}

bool X11WindowManager::supports(const char* hint) const {
  const auto supported = longProperty(connection_, root_, atom("_NET_SUPPORTED"));
  return std::ranges::find(supported, atom(hint)) != supported.end();
}

bool X11WindowManager::isCompositing() const {
  const auto cookie = xcb_get_selection_owner(connection_, atom("_NET_WM_CM_S0"));
  const auto reply = owned(xcb_get_selection_owner_reply(connection_, cookie, nullptr));
  return reply && reply->owner != XCB_WINDOW_NONE;
}

bool X11WindowManager::blursBehind() const {
  const auto reply = owned(
      xcb_list_properties_reply(connection_, xcb_list_properties(connection_, root_), nullptr));
  if (!reply) return false;
  const xcb_atom_t* first = xcb_list_properties_atoms(reply.get());
  const xcb_atom_t* end = first + xcb_list_properties_atoms_length(reply.get());
  return std::find(first, end, atom(kBlur)) != end;
}

void X11WindowManager::writeStates(QWindow& window, bool above) const {
  std::vector<xcb_atom_t> states = {atom("_NET_WM_STATE_STICKY"),
                                    atom("_NET_WM_STATE_SKIP_TASKBAR"),
                                    atom("_NET_WM_STATE_SKIP_PAGER")};
  if (above) states.push_back(atom("_NET_WM_STATE_ABOVE"));
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, idOf(window), atom("_NET_WM_STATE"),
                      XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(states.size()), states.data());
  // Some managers know only one of the two ways to be on every desktop.
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, idOf(window), atom("_NET_WM_DESKTOP"),
                      XCB_ATOM_CARDINAL, 32, 1, &kAllDesktops);
  xcb_flush(connection_);
}

void X11WindowManager::requestStates(QWindow& window, bool above) const {
  send(window, "_NET_WM_STATE",
       {kAdd, atom("_NET_WM_STATE_SKIP_TASKBAR"), atom("_NET_WM_STATE_SKIP_PAGER"),
        kFromApplication, 0});
  send(window, "_NET_WM_STATE",
       {kAdd, atom("_NET_WM_STATE_STICKY"), above ? atom("_NET_WM_STATE_ABOVE") : 0,
        kFromApplication, 0});
  send(window, "_NET_WM_DESKTOP", {kAllDesktops, kFromApplication, 0, 0, 0});
}

void X11WindowManager::requestAbove(QWindow& window, bool above) const {
  send(window, "_NET_WM_STATE",
       {above ? kAdd : kRemove, atom("_NET_WM_STATE_ABOVE"), 0, kFromApplication, 0});
}

void X11WindowManager::send(QWindow& window, const char* message,
                            const std::uint32_t (&data)[5]) const {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = idOf(window);
  event.type = atom(message);
  std::ranges::copy(data, event.data.data32);
  xcb_send_event(connection_, 0, root_,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(connection_);
}

void X11WindowManager::writeType(QWindow& window, bool overFullScreen) const {
  std::vector<xcb_atom_t> types = {atom("_NET_WM_WINDOW_TYPE_NORMAL")};
  if (overFullScreen) types.insert(types.begin(), atom(kCriticalType));
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, idOf(window), atom(kWindowType),
                      XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(types.size()), types.data());
  xcb_flush(connection_);
}

bool X11WindowManager::isOverFullScreen(const QWindow& window) const {
  const auto types = longProperty(connection_, idOf(window), atom(kWindowType));
  return !types.empty() && types.front() == atom(kCriticalType);
}

bool X11WindowManager::isPointerOver(const QWindow& window) const {
  // Downwards, through the frame that the manager may have put around the window.
  for (xcb_window_t parent = root_; parent != XCB_WINDOW_NONE;) {
    const auto pointer = owned(
        xcb_query_pointer_reply(connection_, xcb_query_pointer(connection_, parent), nullptr));
    parent = pointer ? pointer->child : xcb_window_t(XCB_WINDOW_NONE);
    if (parent == idOf(window)) return true;
  }
  return false;
}

void X11WindowManager::writeBlur(QWindow& window, const QRegion& region) const {
  if (region.isEmpty()) {
    xcb_delete_property(connection_, idOf(window), atom(kBlur));
  } else {
    std::vector<std::uint32_t> rectangles;
    const double ratio = window.devicePixelRatio();
    for (const QRect& rect : region) {
      for (const int value : {rect.x(), rect.y(), rect.width(), rect.height()}) {
        rectangles.push_back(static_cast<std::uint32_t>(qRound(value * ratio)));
      }
    }
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, idOf(window), atom(kBlur),
                        XCB_ATOM_CARDINAL, 32, static_cast<std::uint32_t>(rectangles.size()),
                        rectangles.data());
  }
  xcb_flush(connection_);
}

void X11WindowManager::writeShape(QWindow& window, const QRegion& region) const {
  window.setMask(region);
  // The toolkit leaves the request in its buffer until the next one.
  xcb_flush(connection_);
}

}  // namespace velun
