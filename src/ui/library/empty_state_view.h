// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;

namespace velun {

class NoticeLabel;

/// Tells in the middle of an empty list why it is empty, below a symbol.
class EmptyStateView final : public QWidget {
  Q_OBJECT

 public:
  explicit EmptyStateView(QWidget* parent = nullptr);

  /// `symbol` is a name for symbolIcon(); an empty name shows none.
  void show(const QString& symbol, const QString& text);
  QString text() const;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void drawSymbol();

  QString shownSymbol_;
  QLabel* symbol_;
  NoticeLabel* text_;
};

}  // namespace velun
