// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace velun {

/// A small symbol that shows a state of the panel.
class HeaderStateIcon final : public QWidget {
  Q_OBJECT

 public:
  static constexpr int side = 22;

  explicit HeaderStateIcon(const QString& systemName, QWidget* parent = nullptr);

  void setSymbol(const QString& systemName);
  const QString& symbol() const { return systemName_; }
  /// Sets the tool tip and the accessible name.
  void setLabel(const QString& label);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString systemName_;
};

}  // namespace velun
