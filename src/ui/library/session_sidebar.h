// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library/session_list_model.h"

#include <QWidget>

class QListView;
class QStackedWidget;

namespace velun {

class EmptyStateView;

/// The list of saved sessions, or why it is empty. Several can be selected, and dragged out as
/// files. Main thread.
class SessionSidebar final : public QWidget {
  Q_OBJECT

 public:
  explicit SessionSidebar(QWidget* parent = nullptr);

  /// Lists these sessions; with sections that depend on `today`, or without them if it is null.
  /// Call `showList` or `showEmpty` next.
  void list(const SavedSessions& sessions, const QDate& today);
  void showList();
  /// Shows this instead of an empty list. Screen readers announce it when it was not shown before.
  void showEmpty(const QString& symbol, const QString& text);

  /// Selects a session alone, unless it is one of several that are selected already; nullopt
  /// selects none. Returns whether it is listed.
  bool present(const std::optional<QUrl>& selected);

  void focusList();

  /// The shown sessions in display order.
  QList<QUrl> visibleURLs() const { return rows_.visibleURLs(); }
  /// The selected ones in display order.
  SavedSessions selectedSessions() const;

 Q_SIGNALS:
  /// The user selected sessions; of several the last one is shown. Null: none.
  void chosen(std::shared_ptr<const ListedSession> session);
  void deleteRequested();
  /// A right click on a session, which is selected now, at a point of the screen.
  void menuRequested(const QPoint& position);

 private:
  void makeList();
  void choose();
  void requestMenu(const QPoint& position);

  SessionListModel rows_;
  QListView* list_;
  QStackedWidget* listOrEmpty_;
  EmptyStateView* empty_;
  /// Set while the list follows the library, whose changes of the selection are no user's.
  bool isPresenting_ = false;
};

}  // namespace velun
