// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace velun {

/// A thin spinner in place of a pending text. Transparent to the mouse. All spinners rotate in
/// phase, and only while they are visible.
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
