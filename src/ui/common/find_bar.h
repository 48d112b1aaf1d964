// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLineEdit;
class QTextEdit;
class QToolButton;

namespace velun {

class NoticeLabel;

/// A small bar that finds text in a text view: ignores case, goes round at the ends, closes with
/// Escape. Hidden at first.
class FindBar final : public QWidget {
  Q_OBJECT

 public:
  /// `text` must outlive the bar. `captionStyle`: white on the dark panel.
  FindBar(QTextEdit& text, bool captionStyle, QWidget* parent = nullptr);

  /// Shows the bar, with the selected text as what to find, and gives it the keyboard.
  void open();
  /// Hides the bar and gives the keyboard back to the text.
  void close();

  void findNext();
  void findPrevious();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void translate();
  void find(bool backward);
  QToolButton* makeButton(const QString& symbol);

  QTextEdit& text_;
  bool captionStyle_;
  QLineEdit* field_;
  NoticeLabel* outcome_;
  QToolButton* previous_;
  QToolButton* next_;
  QToolButton* done_;
};

}  // namespace velun
