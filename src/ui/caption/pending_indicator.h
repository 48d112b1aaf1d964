// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace velun {

/// A thin spinner at a text that is still awaited. Lets the mouse through to the text under it. All
/// spinners turn in phase; it moves only while it is visible.
class PendingIndicator final : public QWidget {
  Q_OBJECT

 public:
  explicit PendingIndicator(QWidget* parent);

  void setLabel(const QString& label);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  QBasicTimer timer_;
};

}  // namespace velun
