// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTabWidget>

namespace velun {

/// The pages of the settings window. Main thread.
class SettingsPages final : public QTabWidget {
  Q_OBJECT

 public:
  /// Takes ownership of the pages; `models` may be null.
  SettingsPages(QWidget* general, QWidget* models);

 private:
  void translate();
};

}  // namespace velun
