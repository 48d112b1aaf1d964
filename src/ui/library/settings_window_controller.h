// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "ui/library/settings_notes.h"

#include <functional>
#include <memory>
#include <QObject>
#include <QWidget>

namespace velun {

/// Owns the settings window, which is made once and reused. Main thread.
class SettingsWindowController final : public QObject {
  Q_OBJECT

 public:
  /// The model must outlive it.
  SettingsWindowController(CaptionViewModel& model, std::function<void()> openRecordsFolder,
                           SettingsNotes notes, QObject* parent = nullptr);
  ~SettingsWindowController() override;

  void show();
  /// Sets the window's title anew, in the interface language.
  void updateTitle();
  static QString title();
  QWidget& window() const { return *window_; }

 private:
  std::unique_ptr<QWidget> window_;
};

}  // namespace velun
