// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>

struct wl_pointer;
struct zwp_relative_pointer_v1;

namespace velun {

class WaylandConnection;

/// The motion of the pointer as such, whatever moves beneath it. While a button is down, some
/// compositors report positions as if the surface stayed where it was when the button went down, so
/// that a window cannot be moved by them. Main thread.
class PointerMotion final : public QObject {
  Q_OBJECT

 public:
  /// `connection` must outlive this object.
  explicit PointerMotion(const WaylandConnection& connection) : connection_(connection) {}
  ~PointerMotion() override;

  /// Prepares for a press: motion counts from the last press on, even if start() is called when the
  /// pointer has moved on. Call it when the pointer enters a window.
  void listen();
  /// Begins to report motion. Returns false where the compositor cannot.
  bool start();
  /// Reports for the last time, up to the release: it may be known here before start() is called.
  void stop();
  bool isReporting() const { return isReporting_; }

 Q_SIGNALS:
  /// By how many points the pointer has moved since the last press.
  void moved(const QPointF& by);

 private:
  void handleMotion(const QPointF& by);

  const WaylandConnection& connection_;
  wl_pointer* pointer_ = nullptr;
  zwp_relative_pointer_v1* relative_ = nullptr;
  bool isDown_ = false;
  QPointF sincePress_;
  bool isReporting_ = false;
};

}  // namespace velun
