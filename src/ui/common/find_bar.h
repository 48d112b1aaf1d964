// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLineEdit;
class QTextEdit;
class QToolButton;

namespace velun {

class NoticeLabel;

/// A small bar that searches a text view: ignores case, wraps around, closes with Escape. Initially
/// hidden.
class FindBar final : public QWidget {
  Q_OBJECT

 public:
  /// `text` must outlive the bar. `captionStyle` means white on the dark panel.
  FindBar(QTextEdit& text, bool captionStyle, QWidget* parent = nullptr);

  /// Shows the bar with the selected text as the search text, and focuses it.
  void open();
  /// Hides the bar and returns the focus to the text.
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
