// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/layer_windows.h"

#include "platform/desktop/linux/layer_placement.h"
#include "platform/desktop/linux/layer_popup.h"
#include "platform/desktop/linux/layer_surface.h"

#include <algorithm>
#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QPointer>
#include <QScreen>
#include <QWindow>
#include <utility>
#include <vector>

namespace velun {

namespace {

/// Between the loss of a surface and that of its output.
constexpr std::chrono::milliseconds kOutputDelay{500};

}  // namespace

struct LayerWindows::Entry {
  /// A window that was prepared; otherwise a popup.
  bool isPrepared = false;
  bool isLayer = false;
  bool isClickThrough = false;
  bool isPointerOver = false;
  std::unique_ptr<LayerSurface> layer = nullptr;
  std::unique_ptr<LayerPopup> popup = nullptr;
  /// What a popup lies over while it is shown.
  QWindow* parent = nullptr;
};

std::unique_ptr<LayerWindows> LayerWindows::open(Clock& clock) {
  std::unique_ptr<WaylandConnection> connection = WaylandConnection::open();
  if (!connection) return nullptr;
  return std::unique_ptr<LayerWindows>(new LayerWindows(std::move(connection), clock));
}

LayerWindows::LayerWindows(std::unique_ptr<WaylandConnection> connection, Clock& clock)
    : connection_(std::move(connection)), clock_(clock) {
  isPossible_ = connection_->layerShell() && connection_->windowBase() &&
                qEnvironmentVariableIsSet("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT");
  connect(&motion_, &PointerMotion::moved, this, &LayerWindows::pointerMoved);
  // Queued, because Qt still lists the removed screen during the signal.
  connect(
      qGuiApp, &QGuiApplication::screenRemoved, this, [this] { checkOutputs(); },
      Qt::QueuedConnection);
  connect(
      qGuiApp, &QGuiApplication::screenAdded, this, [this] { checkOutputs(true); },
      Qt::QueuedConnection);
  qGuiApp->installEventFilter(this);
}

LayerWindows::~LayerWindows() {
  motion_.stop();
  // Popups are in front of what they lie over.
  for (auto& [window, entry] : entries_) entry.popup.reset();
}

void LayerWindows::prepare(QWindow& window, bool asLayer) {
  Entry& entry = entries_[&window];
  entry.isPrepared = true;
  entry.isLayer = asLayer && isPossible_;
  window.setFlag(Qt::BypassWindowManagerHint, entry.isLayer);
}

bool LayerWindows::isLayer(const QWindow& window) const {
  const Entry* entry = entryOf(&window);
  return entry && entry->isLayer;
}

void LayerWindows::setFrame(QWindow& window, const QRect& frame) {
  Entry* entry = entryOf(&window);
  if (!entry || !entry->layer) return;
  entry->layer->setFrame(frame);
  // While it is dragged it is left where it is.
  if (!motion_.isReporting()) checkOutputs();
}

void LayerWindows::setClickThrough(QWindow& window, bool isThrough) {
  // Qt does it for ordinary windows.
  window.setFlag(Qt::WindowTransparentForInput, isThrough);
  Entry& entry = entries_[&window];
  entry.isClickThrough = isThrough;
  if (entry.layer) entry.layer->setClickThrough(isThrough);
}

bool LayerWindows::isPointerOver(const QWindow& window) const {
  const Entry* entry = entryOf(&window);
  return entry && entry->isPointerOver;
}

bool LayerWindows::followPointer(const QWindow& window) {
  const Entry* entry = entryOf(&window);
  return entry && entry->layer && motion_.start();
}

void LayerWindows::stopFollowing() {
  if (!motion_.isReporting()) return;
  motion_.stop();
  checkOutputs();
}

LayerWindows::Entry* LayerWindows::entryOf(const QWindow* window) {
  const auto found = entries_.find(window);
  return found == entries_.end() ? nullptr : &found->second;
}

const LayerWindows::Entry* LayerWindows::entryOf(const QWindow* window) const {
  const auto found = entries_.find(window);
  return found == entries_.end() ? nullptr : &found->second;
}

QWindow* LayerWindows::parentOf(const QWindow& popup) const {
  const bool isMenuOrTip = popup.type() == Qt::Popup || popup.type() == Qt::ToolTip;
  // What is dragged with the mouse has a tip's type and a role of its own.
  if (!isMenuOrTip || popup.inherits("QShapedPixmapWindow")) return nullptr;
  QWindow* parent = popup.transientParent();
  if (!parent) parent = QGuiApplication::focusWindow();
  for (; parent; parent = parent->transientParent()) {
    const Entry* entry = entryOf(parent);
    if (entry && (entry->layer || entry->popup)) return parent;
  }
  return nullptr;
}

bool LayerWindows::eventFilter(QObject* watched, QEvent* event) {
  if (watched->isWindowType()) handle(*static_cast<QWindow*>(watched), *event);
  return false;
}

void LayerWindows::handle(QWindow& window, QEvent& event) {
  if (event.type() == QEvent::Show) {
    beforeShow(window);
    return;
  }
  Entry* entry = entryOf(&window);
  if (!entry) return;
  switch (event.type()) {
    case QEvent::Enter:
      entry->isPointerOver = true;
      if (entry->layer) motion_.listen();
      break;
    case QEvent::Leave:
      entry->isPointerOver = false;
      releaseKeyboard(window, *entry);
      break;
    case QEvent::MouseButtonPress:
      if (entry->layer) entry->layer->setKeyboard(true);
      break;
    case QEvent::Hide:
      entry->isPointerOver = false;
      break;
    case QEvent::PlatformSurface:
      if (static_cast<QPlatformSurfaceEvent&>(event).surfaceEventType() ==
          QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed) {
        detach(window);
        entries_.erase(&window);
      }
      break;
    default:
      break;
  }
}

void LayerWindows::beforeShow(QWindow& window) {
  if (!isPossible_) return;
  Entry* entry = entryOf(&window);
  if (!entry || !entry->isPrepared) {
    const bool isOverLayer = parentOf(window) != nullptr;
    if (!entry && !isOverLayer) return;
    window.setFlag(Qt::BypassWindowManagerHint, isOverLayer);
    if (!isOverLayer) return;
    entries_[&window];
  }
  watchSurface(window);
  // At the first showing the surface is already there, later it is made after this event.
  attach(window);
}

void LayerWindows::watchSurface(QWindow& window) {
  QObject* object = WaylandConnection::platformObjectOf(window);
  if (!object || watched_.contains(object)) return;
  watched_[object] = &window;
  connect(object, SIGNAL(wlSurfaceCreated()), this, SLOT(surfaceCreated()));
  connect(object, SIGNAL(wlSurfaceDestroyed()), this, SLOT(surfaceDestroyed()));
  connect(object, &QObject::destroyed, this, [this, object] { watched_.remove(object); });
}

void LayerWindows::surfaceCreated() {
  if (QWindow* window = watched_.value(sender())) attach(*window);
}

void LayerWindows::surfaceDestroyed() {
  if (QWindow* window = watched_.value(sender())) detach(*window);
}

void LayerWindows::attach(QWindow& window) {
  Entry* entry = entryOf(&window);
  if (!entry || entry->layer || entry->popup || !WaylandConnection::surfaceOf(window)) return;
  if (entry->isLayer) {
    attachLayer(window, *entry);
  } else if (!entry->isPrepared) {
    attachPopup(window, *entry);
  }
}

void LayerWindows::attachLayer(QWindow& window, Entry& entry) {
  entry.layer = std::make_unique<LayerSurface>(*connection_, window, window.geometry());
  connect(entry.layer.get(), &LayerSurface::closed, this, &LayerWindows::layerClosed);
  if (entry.isClickThrough) entry.layer->setClickThrough(true);
}

void LayerWindows::attachPopup(QWindow& window, Entry& entry) {
  QWindow* parent = parentOf(window);
  if (!parent) return;
  const Entry& under = *entryOf(parent);
  entry.parent = parent;
  const LayerPopup::Parent handles = {
      .layer = under.layer ? under.layer->handle() : nullptr,
      .popup = under.popup ? under.popup->surface() : nullptr,
  };
  const QRect frame = relativeTo(parent->geometry(), window.geometry());
  entry.popup = std::make_unique<LayerPopup>(*connection_, window, frame, handles,
                                             window.type() == Qt::Popup);
  connect(entry.popup.get(), &LayerPopup::dismissed, &window, [&window] { window.close(); });
  // The menus that open out of this one are placed by where it is.
  const QPoint position = entry.popup->position();
  if (position != frame.topLeft()) window.setPosition(parent->geometry().topLeft() + position);
}

void LayerWindows::detach(QWindow& window) {
  closePopupsOver(window);
  Entry* entry = entryOf(&window);
  if (!entry) return;
  entry->popup.reset();
  entry->layer.reset();
  if (!std::exchange(entry->parent, nullptr)) return;
  // After a menu nobody tells that the pointer has left meanwhile. A timer, so that a command of
  // the menu, which is a posted event, may open another popup first: it needs the keyboard.
  releasing_ = clock_.callAfter(std::chrono::milliseconds{0}, [this] {
    for (const auto& [shown, itsEntry] : entries_) releaseKeyboard(*shown, itsEntry);
  });
}

void LayerWindows::releaseKeyboard(const QWindow& window, const Entry& entry) const {
  if (!entry.layer || entry.isPointerOver || hasPopup(window)) return;
  entry.layer->setKeyboard(false);
}

void LayerWindows::closePopupsOver(const QWindow& window) {
  std::vector<QPointer<QWindow>> popups;
  for (const auto& [other, entry] : entries_) {
    if (entry.parent == &window) popups.emplace_back(const_cast<QWindow*>(other));
  }
  for (const QPointer<QWindow>& popup : popups) {
    if (popup) popup->close();
    if (popup) detach(*popup);
  }
}

bool LayerWindows::hasPopup(const QWindow& window) const {
  return std::ranges::any_of(entries_,
                             [&window](const auto& item) { return item.second.parent == &window; });
}

void LayerWindows::layerClosed() {
  // Usually the output goes next, and the panel is moved to another.
  closing_ = clock_.callAfter(kOutputDelay, [this] { checkOutputs(true); });
}

void LayerWindows::checkOutputs(bool closed) {
  if (motion_.isReporting()) return;
  QList<QRect> outputs;
  const QList<QScreen*> screens = QGuiApplication::screens();
  for (const QScreen* screen : screens) outputs << screen->geometry();
  const auto mustBeShownAgain = [&](const auto& item) {
    const auto& [window, entry] = item;
    const qsizetype index = entry.layer ? outputFor(window->geometry(), outputs) : -1;
    // Without any output, Qt has a screen of its own.
    if (index < 0 || !WaylandConnection::outputOf(screens.at(index))) return false;
    return screens.at(index) != entry.layer->screen() || (closed && entry.layer->isClosed());
  };
  if (std::ranges::any_of(entries_, mustBeShownAgain)) Q_EMIT showAgainRequired();
}

}  // namespace velun
