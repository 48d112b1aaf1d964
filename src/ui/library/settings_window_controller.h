// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "ui/library/settings_notes.h"

#include <functional>
#include <memory>
#include <QObject>
#include <QWidget>

namespace velun {

class SettingsView;

/// Owns the settings window, which is made when first shown and kept. Main thread.
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
  /// Null until it was shown once.
  QWidget* window() const { return window_.get(); }
  /// Something that the notes tell of has changed.
  void updateNotes();

 private:
  CaptionViewModel& model_;
  std::function<void()> openRecordsFolder_;
  SettingsNotes notes_;
  std::unique_ptr<QWidget> window_;
  SettingsView* view_ = nullptr;
};

}  // namespace velun
