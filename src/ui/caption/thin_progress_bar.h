// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProgressBar>

namespace velun {

/// A thin progress bar without a text, for the dark panel.
class ThinProgressBar final : public QProgressBar {
  Q_OBJECT

 public:
  explicit ThinProgressBar(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace velun
