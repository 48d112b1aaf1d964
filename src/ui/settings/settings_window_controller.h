// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "ui/models/model_services.h"
#include "ui/settings/desktop_settings.h"
#include "ui/settings/settings_notes.h"

#include <functional>
#include <memory>
#include <QObject>
#include <QWidget>

namespace velun {

class ModelsPage;
class SettingsPages;

/// Owns the settings window, which is created once and reused. Main thread.
class SettingsWindowController final : public QObject {
  Q_OBJECT

 public:
  /// `model`, `notes` and everything in `models` and `desktop` must outlive this object. `notes`
  /// may be null; without `models` there is no page for them.
  SettingsWindowController(CaptionViewModel& model, std::function<void()> openRecordsFolder,
                           const SettingsNotes* notes, const ModelServices* models = nullptr,
                           const DesktopSettings& desktop = {});
  ~SettingsWindowController() override;

  void show();
  /// Shows the page "Languages & Models" in the window.
  void showModels();
  /// Updates the window's title to the interface language.
  void updateTitle();
  static QString title();
  QWidget& window() const { return *window_; }

 private:
  std::unique_ptr<QWidget> window_;
  // In the window, as the page below, which may be null.
  SettingsPages* pages_;
  ModelsPage* models_ = nullptr;
};

}  // namespace velun
