// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/foundation/preference_store.h"
#include "settings/app_settings.h"
#include "ui/library/history_actions.h"
#include "ui/library/history_view_model.h"

#include <functional>
#include <memory>
#include <QObject>

namespace velun {

class HistoryView;

/// Owns the saved-sessions window, which is made once and reused. Main thread.
class HistoryWindowController final : public QObject {
  Q_OBJECT

 public:
  /// What it is given must outlive it. `frames` keeps the window's frame; may be null.
  HistoryWindowController(HistoryViewModel& model, AppSettings& settings, HistoryActions actions,
                          Clock& clock, PreferenceStore* frames, QObject* parent = nullptr);
  ~HistoryWindowController() override;

  /// Brings the window to the front and lists the sessions again.
  void show();
  /// Sets the window's title anew, in the interface language.
  void updateTitle();
  static QString title();
  /// Whether the window has the keyboard.
  bool isKeyWindow() const;
  QWidget& window() const { return *window_; }
  HistoryView& view() const { return *view_; }

  /// Called after another session was selected.
  std::function<void()> selectionChanged;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  HistoryViewModel& model_;
  PreferenceStore* frames_;
  std::unique_ptr<QWidget> window_;
  HistoryView* view_;
};

}  // namespace velun
