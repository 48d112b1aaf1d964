// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/language_choice.h"

#include <QWidget>
#include <vector>

class QKeyEvent;
class QLineEdit;
class QListView;

namespace velun {

class InputMethodRelay;
class LanguageChoiceModel;
class NoticeLabel;

/// The list of languages to choose one from, in a small window with a search field: the one chooser
/// of languages, opened by menus and forms. Typing filters the list, arrow keys move in it, Enter
/// chooses, Escape closes. It closes when another window is activated and stays active while the
/// events that have arrived are handled. Main thread.
///
/// It is not a pop-up window for the window system: with those, input methods do not work under
/// X11, and Hangul could not be typed.
class LanguagePopup final : public QWidget {
  Q_OBJECT

 public:
  /// Above the window of `parent`. Its edge has the palette’s middle colour (`QPalette::Mid`).
  explicit LanguagePopup(QWidget* parent);

  /// Shows the choices at `anchor`, in global coordinates: below it or, without room, above it, and
  /// never larger than a part of the screen. `title` is its name for screen readers; `typed` is
  /// typed into the search field.
  void open(const QString& title, std::vector<LanguageChoice> choices, const QString& current,
            const QRect& anchor, const QString& typed = {});

  /// Adds to the search text, for keys that arrive before the window has the keyboard.
  void addTyped(const QString& text);

 Q_SIGNALS:
  /// Emitted after it was closed.
  void chosen(const QString& identifier);
  void opened();
  void closed();

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool searchKey(const QKeyEvent& key);
  bool listKey(const QKeyEvent& key);
  bool anyKey(const QKeyEvent& key);
  void moveInList(const QKeyEvent& key);
  void filter();
  void selectRow(int row);
  void chooseCurrentRow();
  void place(const QRect& anchor);
  void closeUnlessActive();

  LanguageChoiceModel* choices_;
  QLineEdit* search_;
  QListView* list_;
  NoticeLabel* notice_;
  InputMethodRelay* relay_ = nullptr;
  QString current_;
  bool wasActive_ = false;
};

}  // namespace velun
