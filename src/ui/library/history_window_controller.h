// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "settings/app_settings.h"
#include "ui/library/history_actions.h"
#include "ui/library/history_view_model.h"

#include <memory>
#include <QObject>

namespace velun {

class HistoryView;

/// Owns the window of saved sessions, which is created once and reused. Main thread.
class HistoryWindowController final : public QObject {
  Q_OBJECT

 public:
  /// All references must outlive this object.
  HistoryWindowController(HistoryViewModel& model, AppSettings& settings, HistoryActions actions,
                          Clock& clock);
  ~HistoryWindowController() override;

  /// Brings the window to the front and lists the sessions again.
  void show();
  /// Updates the window's title to the interface language.
  void updateTitle();
  static QString title();
  /// Whether the window has the keyboard focus.
  bool isKeyWindow() const;
  QWidget& window() const { return *window_; }
  HistoryView& view() const { return *view_; }

 private:
  HistoryViewModel& model_;
  std::unique_ptr<QWidget> window_;
  HistoryView* view_;
};

}  // namespace velun
