// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

namespace velun {

/// A line with the name of a language; pressing it shows and hides what is below it. Main thread.
class GroupHeader final : public QAbstractButton {
  Q_OBJECT

 public:
  explicit GroupHeader(QWidget* parent = nullptr);

  void setTexts(const QString& title, const QString& ownName, const QString& summary);

  bool isOpen() const { return isOpen_; }
  void setOpen(bool isOpen);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void openChanged(bool isOpen);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void describe();
  QFont titleFont() const;
  QFont smallFont() const;

  QString title_;
  QString ownName_;
  QString summary_;
  bool isOpen_ = false;
};

}  // namespace velun
