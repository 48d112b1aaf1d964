// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTabWidget>

namespace velun {

/// The pages of the settings window. Main thread.
class SettingsPages final : public QTabWidget {
  Q_OBJECT

 public:
  /// Takes ownership of the pages; `models` may be null.
  SettingsPages(QWidget* general, QWidget* appearance, QWidget* models);

  /// Shows the page "Languages & Models".
  void showModels();

 protected:
  /// The keyboard begins at the first control of the page, not at the tabs.
  void showEvent(QShowEvent* event) override;

 private:
  /// Scrolls to a control that gets the focus from the tabs.
  void showFocused(QWidget* control);
  void translate();

  QWidget* models_;
};

}  // namespace velun
