// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "settings/app_settings.h"
#include "ui/library/history_actions.h"
#include "ui/library/history_commands.h"
#include "ui/library/history_view_model.h"
#include "ui/library/session_search.h"

#include <memory>
#include <QDate>
#include <QWidget>

class QAction;
class QLineEdit;
class QMenu;
class QSplitter;
class QToolBar;
class QToolButton;

namespace velun {

class ArrangementMenu;
class EmptyStateView;
class NoticeLabel;
class SessionDetailView;
class SessionSidebar;

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
  QList<QUrl> visibleURLs() const;

  bool isSidebarVisible() const;
  void setSidebarVisible(bool visible);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void connectCommands();
  void makeToolBar();
  QToolButton* makeMenuButton();
  QMenu* makeMoreMenu();
  void makeBanner();
  void makePanes();
  QWidget* makeDetail();
  void makeSearchField();
  void followLibrary();
  void translate();
  void presentSessions();
  void presentArrangement();
  void presentSelection();
  void presentNothingSelected();
  void presentError();
  void checkDayEveryMinute();
  /// At a point of the screen.
  void showContextMenu(const QPoint& position);
  void deleteSelected();
  void renameSelected();
  /// Goes to the next match of the search, or to the one before, also in the neighbouring session.
  void stepToMatch(bool forward);
  void combineSelected();
  /// Nothing if one of the selected sessions cannot be read.
  std::optional<CaptionSession> combinedSelection();
  void showStatistics();
  /// Calls `change` with the line in which the cursor is.
  void changeLine(const std::function<void(const SavedSession&, const Line&)>& change);
  /// Enables the actions that fit the selection.
  void enableActions();
  void enableLineActions();
  void exportSelected();
  void revealSelected();

  HistoryViewModel& library_;
  AppSettings& settings_;
  HistoryActions actions_;
  Clock& clock_;
  HistoryCommands commands_;
  SessionSearch search_;
  std::unique_ptr<ScheduledCall> dayCheck_;
  /// The day from which the sections count back.
  QDate shownDay_;

  QToolBar* toolBar_;
  QToolButton* arrange_;
  ArrangementMenu* arrangement_;
  QToolButton* more_;
  NoticeLabel* banner_;
  QSplitter* splitter_;
  QLineEdit* searchField_;
  QAction* searchSymbol_;
  SessionSidebar* sidebar_;
  SessionDetailView* detail_;
  /// In place of the detail while no session is selected.
  EmptyStateView* nothingSelected_;
};

}  // namespace velun
