// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>

class QVBoxLayout;

namespace velun {

/// A page of the settings window whose form scrolls vertically. Main thread.
class SettingsPage : public QScrollArea {
  Q_OBJECT

 public:
  explicit SettingsPage(QWidget* parent = nullptr);

  /// The width of the controls; the form scrolls vertically.
  QSize minimumSizeHint() const override;

 protected:
  /// Where controls are appended.
  QVBoxLayout& form() const { return *form_; }

 private:
  QVBoxLayout* form_;
};

}  // namespace velun
