// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace velun {

/// A label with space around its text that outlasts a change of the style: QFrame then takes the
/// contents margins of every label away.
class PaddedLabel : public QLabel {
  Q_OBJECT

 public:
  using QLabel::QLabel;

  /// In points.
  void setPadding(const QMargins& padding);
  const QMargins& padding() const { return padding_; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QMargins padding_;
};

}  // namespace velun
