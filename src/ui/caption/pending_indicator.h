// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QWidget>

namespace velun {

class SpinnerClock;

/// A thin spinner in place of a pending text. Transparent to the mouse. `SpinnerClock` rotates it
/// while it is visible, in phase with all others.
class PendingIndicator final : public QWidget {
  Q_OBJECT

 public:
  explicit PendingIndicator(QWidget* parent);
  ~PendingIndicator() override;

  void setLabel(const QString& label);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  std::shared_ptr<SpinnerClock> clock_;
};

}  // namespace velun
