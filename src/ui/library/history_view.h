// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "settings/app_settings.h"
#include "ui/library/history_actions.h"
#include "ui/library/history_view_model.h"
#include "ui/library/session_list_model.h"
#include "ui/library/session_search.h"

#include <memory>
#include <QWidget>

class QAction;
class QLineEdit;
class QListView;
class QMenu;
class QSplitter;
class QStackedWidget;
class QToolBar;
class QToolButton;

namespace velun {

class EmptyStateView;
class NoticeLabel;
class SessionDetailView;

/// The content of the window of saved sessions: a searchable sidebar of sessions by date, and the
/// selected session's transcript. Main thread.
class HistoryView final : public QWidget {
  Q_OBJECT

 public:
  /// `library`, `settings` and `clock` must outlive the view.
  HistoryView(HistoryViewModel& library, AppSettings& settings, HistoryActions actions,
              Clock& clock, QWidget* parent = nullptr);
  ~HistoryView() override;

  /// The shown sessions in display order.
  QList<QUrl> visibleURLs() const { return rows_.visibleURLs(); }

  bool isSidebarVisible() const;
  void setSidebarVisible(bool visible);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void makeActions();
  void makeToolBar();
  void makeBanner();
  void makePanes();
  QWidget* makeSidebar();
  QWidget* makeDetail();
  void makeSearchField();
  void makeList(QWidget* sidebar);
  void followLibrary();
  void translate();
  void presentSessions();
  void presentSelection();
  void presentNothingSelected();
  void presentError();
  void checkDayEveryMinute();
  void showContextMenu(const QPoint& position);
  void deleteSelected();
  void renameSelected();
  /// Goes to the next match of the search, or to the one before, also in the neighbouring session.
  void stepToMatch(bool forward);
  void combineSelected();
  void showStatistics();
  /// The selected sessions in display order.
  SavedSessions selectedSessions() const;
  /// Enables the actions that fit the selection.
  void enableActions();
  void exportSelected();
  void revealSelected();

  HistoryViewModel& library_;
  AppSettings& settings_;
  HistoryActions actions_;
  Clock& clock_;
  SessionSearch search_;
  SessionListModel rows_;
  std::unique_ptr<ScheduledCall> dayCheck_;
  /// The day from which the sections count back.
  QDate shownDay_;
  /// Set while the list is updated from the library, whose changes of the selection are no user's.
  bool isPresenting_ = false;

  QAction* delete_;
  QAction* export_;
  QAction* openFile_;
  QAction* saveFile_;
  QAction* reveal_;
  QAction* rename_;
  QAction* statistics_;
  QAction* combine_;
  QAction* undo_;
  QAction* refresh_;
  QAction* sidebar_;
  QAction* find_;
  QMenu* moreMenu_;
  QToolBar* toolBar_;
  QToolButton* more_;
  NoticeLabel* banner_;
  QSplitter* splitter_;
  QLineEdit* searchField_;
  QAction* searchSymbol_;
  QListView* list_;
  QStackedWidget* listOrEmpty_;
  EmptyStateView* empty_;
  SessionDetailView* detail_;
  /// In place of the detail while no session is selected.
  EmptyStateView* nothingSelected_;
};

}  // namespace velun
