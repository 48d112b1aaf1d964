// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/x11_window_manager.h"

#include "platform/desktop/linux/x11_display.h"

#include <algorithm>
#include <array>
#include <QRegion>
#include <QWindow>
#include <span>
#include <string_view>
#include <vector>
#include <xcb/shape.h>
#include <xcb/xfixes.h>

namespace velun {

namespace {

constexpr int kScreen = 0;
constexpr std::uint32_t kAllDesktops = 0xFFFFFFFF;

/// Announces the version that knows shapes for the pointer. Returns whether the server knows them.
bool announceShapes(xcb_connection_t* connection) {
  const auto* fixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
  if (!fixes || !fixes->present) return false;
  const auto version = owned(xcb_xfixes_query_version_reply(
      connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
  return version && version->major_version >= 2;
}

// The id of a QWidget can be out of date; the window's never is.
xcb_window_t nativeId(const QWindow& window) {
  return static_cast<xcb_window_t>(window.winId());
}

}  // namespace

std::unique_ptr<X11WindowManager> X11WindowManager::open(xcb_connection_t* connection) {
  auto manager = std::unique_ptr<X11WindowManager>(new X11WindowManager);
  xcb_ewmh_connection_t* ewmh = &manager->ewmh_;
  // On failure it has freed what it allocated.
  if (!xcb_ewmh_init_atoms_replies(ewmh, xcb_ewmh_init_atoms(connection, ewmh), nullptr)) {
    *ewmh = {};
    return nullptr;
  }
  manager->connection_ = connection;
  manager->root_ = rootWindow(connection);
  manager->hasShapes_ = announceShapes(connection);
  manager->criticalType_ = atomNamed(connection, "_KDE_NET_WM_WINDOW_TYPE_CRITICAL_NOTIFICATION");
  manager->blur_ = atomNamed(connection, "_KDE_NET_WM_BLUR_BEHIND_REGION");
  return manager;
}

X11WindowManager::~X11WindowManager() {
  xcb_ewmh_connection_wipe(&ewmh_);
}

bool X11WindowManager::isKWin() const {
  xcb_window_t check = XCB_WINDOW_NONE;
  xcb_ewmh_get_utf8_strings_reply_t name;
  if (!xcb_ewmh_get_supporting_wm_check_reply(
          &ewmh_, xcb_ewmh_get_supporting_wm_check(&ewmh_, root_), &check, nullptr) ||
      !xcb_ewmh_get_wm_name_reply(&ewmh_, xcb_ewmh_get_wm_name(&ewmh_, check), &name, nullptr)) {
    return false;
  }
  const bool isKWin = std::string_view(name.strings, name.strings_len) == "KWin";
  xcb_ewmh_get_utf8_strings_reply_wipe(&name);
  return isKWin;
}

bool X11WindowManager::supports(xcb_atom_t hint) const {
  xcb_ewmh_get_atoms_reply_t hints;
  const auto cookie = xcb_ewmh_get_supported(&ewmh_, kScreen);
  if (!xcb_ewmh_get_supported_reply(&ewmh_, cookie, &hints, nullptr)) return false;
  const bool found = std::ranges::count(std::span(hints.atoms, hints.atoms_len), hint) > 0;
  xcb_ewmh_get_atoms_reply_wipe(&hints);
  return found;
}

bool X11WindowManager::showsOnAllDesktops() const {
  return supports(ewmh_._NET_WM_STATE_STICKY) || supports(ewmh_._NET_WM_DESKTOP);
}

QRect X11WindowManager::workArea() const {
  std::uint32_t current = 0;
  xcb_ewmh_get_current_desktop_reply(&ewmh_, xcb_ewmh_get_current_desktop(&ewmh_, kScreen),
                                     &current, nullptr);
  xcb_ewmh_get_workarea_reply_t areas;
  const auto cookie = xcb_ewmh_get_workarea(&ewmh_, kScreen);
  if (!xcb_ewmh_get_workarea_reply(&ewmh_, cookie, &areas, nullptr)) return {};
  QRect area;
  if (current < areas.workarea_len) {
    const auto& found = areas.workarea[current];
    area = QRect(int(found.x), int(found.y), int(found.width), int(found.height));
  }
  xcb_ewmh_get_workarea_reply_wipe(&areas);
  return area;
}

bool X11WindowManager::isCompositing() const {
  xcb_window_t owner = XCB_WINDOW_NONE;
  return xcb_ewmh_get_wm_cm_owner_reply(&ewmh_, xcb_ewmh_get_wm_cm_owner(&ewmh_, kScreen), &owner,
                                        nullptr) &&
         owner != XCB_WINDOW_NONE;
}

bool X11WindowManager::blursBehind() const {
  const auto reply = owned(
      xcb_list_properties_reply(connection_, xcb_list_properties(connection_, root_), nullptr));
  if (!reply) return false;
  const xcb_atom_t* first = xcb_list_properties_atoms(reply.get());
  const xcb_atom_t* end = first + xcb_list_properties_atoms_length(reply.get());
  return std::find(first, end, blur_) != end;
}

void X11WindowManager::writeStates(QWindow& window, bool above) const {
  std::array states = {ewmh_._NET_WM_STATE_STICKY, ewmh_._NET_WM_STATE_SKIP_TASKBAR,
                       ewmh_._NET_WM_STATE_SKIP_PAGER, ewmh_._NET_WM_STATE_ABOVE};
  const std::size_t count = above ? states.size() : states.size() - 1;
  xcb_ewmh_set_wm_state(&ewmh_, nativeId(window), std::uint32_t(count), states.data());
  // Some managers know only one of the two ways to be on every desktop.
  xcb_ewmh_set_wm_desktop(&ewmh_, nativeId(window), kAllDesktops);
  xcb_flush(connection_);
}

void X11WindowManager::request(QWindow& window, xcb_ewmh_wm_state_action_t action, xcb_atom_t first,
                               xcb_atom_t second) const {
  xcb_ewmh_request_change_wm_state(&ewmh_, kScreen, nativeId(window), action, first, second,
                                   XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL);
  xcb_flush(connection_);
}

void X11WindowManager::requestStates(QWindow& window, bool above) const {
  request(window, XCB_EWMH_WM_STATE_ADD, ewmh_._NET_WM_STATE_SKIP_TASKBAR,
          ewmh_._NET_WM_STATE_SKIP_PAGER);
  request(window, XCB_EWMH_WM_STATE_ADD, ewmh_._NET_WM_STATE_STICKY,
          above ? ewmh_._NET_WM_STATE_ABOVE : xcb_atom_t(XCB_ATOM_NONE));
  xcb_ewmh_request_change_wm_desktop(&ewmh_, kScreen, nativeId(window), kAllDesktops,
                                     XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL);
  xcb_flush(connection_);
}

void X11WindowManager::requestAbove(QWindow& window, bool above) const {
  request(window, above ? XCB_EWMH_WM_STATE_ADD : XCB_EWMH_WM_STATE_REMOVE,
          ewmh_._NET_WM_STATE_ABOVE, XCB_ATOM_NONE);
}

void X11WindowManager::writeType(QWindow& window, bool overFullScreen) const {
  std::array types = {criticalType_, ewmh_._NET_WM_WINDOW_TYPE_NORMAL};
  const std::size_t first = overFullScreen ? 0 : 1;
  xcb_ewmh_set_wm_window_type(&ewmh_, nativeId(window), std::uint32_t(types.size() - first),
                              types.data() + first);
  xcb_flush(connection_);
}

bool X11WindowManager::isOverFullScreen(const QWindow& window) const {
  xcb_ewmh_get_atoms_reply_t types;
  const auto cookie = xcb_ewmh_get_wm_window_type(&ewmh_, nativeId(window));
  if (!xcb_ewmh_get_wm_window_type_reply(&ewmh_, cookie, &types, nullptr)) return false;
  const bool isOver = types.atoms_len > 0 && types.atoms[0] == criticalType_;
  xcb_ewmh_get_atoms_reply_wipe(&types);
  return isOver;
}

void X11WindowManager::writeClickThrough(QWindow& window, bool isThrough) const {
  if (!hasShapes_) return;
  xcb_xfixes_region_t region = XCB_XFIXES_REGION_NONE;
  if (isThrough) {
    region = xcb_generate_id(connection_);
    xcb_xfixes_create_region(connection_, region, 0, nullptr);
  }
  xcb_xfixes_set_window_shape_region(connection_, nativeId(window), XCB_SHAPE_SK_INPUT, 0, 0,
                                     region);
  if (isThrough) xcb_xfixes_destroy_region(connection_, region);
  xcb_flush(connection_);
}

bool X11WindowManager::isPointerOver(const QWindow& window) const {
  // Descend from the root: the manager may have put the window into a frame.
  for (xcb_window_t parent = root_; parent != XCB_WINDOW_NONE;) {
    const auto pointer = owned(
        xcb_query_pointer_reply(connection_, xcb_query_pointer(connection_, parent), nullptr));
    parent = pointer ? pointer->child : xcb_window_t(XCB_WINDOW_NONE);
    if (parent == nativeId(window)) return true;
  }
  return false;
}

void X11WindowManager::writeBlur(QWindow& window, const QRegion& region) const {
  if (region.isEmpty()) {
    xcb_delete_property(connection_, nativeId(window), blur_);
  } else {
    std::vector<std::uint32_t> rectangles;
    const double ratio = window.devicePixelRatio();
    for (const QRect& rect : region) {
      for (const int value : {rect.x(), rect.y(), rect.width(), rect.height()}) {
        rectangles.push_back(static_cast<std::uint32_t>(qRound(value * ratio)));
      }
    }
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, nativeId(window), blur_,
                        XCB_ATOM_CARDINAL, 32, static_cast<std::uint32_t>(rectangles.size()),
                        rectangles.data());
  }
  xcb_flush(connection_);
}

}  // namespace velun
