// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QAction;
class QLabel;
class QToolButton;

namespace velun {

class NoticeLabel;

/// Tells in the middle of an empty view why it is empty, below a symbol, and what to do about it.
class EmptyStateView final : public QWidget {
  Q_OBJECT

 public:
  explicit EmptyStateView(QWidget* parent = nullptr);

  /// `symbol` is a name for symbolIcon(); an empty name shows none. Screen readers announce `text`.
  void show(const QString& symbol, const QString& text);
  /// Adds a sentence below the text, and a button for `action`, which may be null.
  void setHint(const QString& hint, QAction* action = nullptr);
  QString text() const;
  QString hint() const;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void drawSymbol();

  QString shownSymbol_;
  QLabel* symbol_;
  NoticeLabel* text_;
  QLabel* hint_;
  QToolButton* button_;
};

}  // namespace velun
