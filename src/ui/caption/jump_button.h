// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QVariantAnimation>

namespace velun {

/// The round button over the transcript that goes to the latest caption. Comes and goes softly.
class JumpButton final : public QAbstractButton {
  Q_OBJECT

 public:
  static constexpr int side = 32;

  explicit JumpButton(QWidget* parent);

  /// Whether it is to be seen, now or once it has come.
  void setWanted(bool wanted);
  bool isWanted() const { return wanted_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void present();

  bool wanted_ = false;
  QVariantAnimation opacity_;
};

}  // namespace velun
