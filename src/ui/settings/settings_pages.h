// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>
#include <vector>

class QListWidget;
class QStackedWidget;

namespace velun {

/// The pages of the settings window: a list of their titles, and the chosen page beside it.
/// Ctrl+Tab and Ctrl+Page Down show the next page from anywhere. Main thread.
class SettingsPages final : public QWidget {
  Q_OBJECT

 public:
  /// One entry of the list.
  struct Page {
    QWidget* widget;
    /// The name of its symbol.
    QString symbol;
    /// Its title in the interface language.
    QString (*title)();
  };

  /// Takes ownership of the widgets.
  explicit SettingsPages(std::vector<Page> pages, QWidget* parent = nullptr);

  /// Shows one of the pages.
  void showPage(const QWidget& page);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void makeList();
  void addShortcuts();
  /// Shows the page at a distance in the list; the first follows the last.
  void step(int distance);
  /// Scrolls to a control that gets the focus from the list.
  void showFocused(QWidget* control);
  void translate();
  void fitList();

  std::vector<Page> pages_;
  QListWidget* list_;
  QStackedWidget* stack_;
};

}  // namespace velun
