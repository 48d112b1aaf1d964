// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "model/session_work.h"
#include "ui/library/history_view.h"
#include "ui/library/session_detail_view.h"
#include "ui/library/session_sidebar.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>

namespace velun {

void HistoryView::connectCommands() {
  const auto run = [this](QAction* action, auto command) {
    connect(action, &QAction::triggered, this, command);
  };
  run(commands_.remove, [this] { deleteSelected(); });
  run(commands_.exportAs, [this] { exportSelected(); });
  run(commands_.openFile, [this] { actions_.openFile(); });
  run(commands_.saveFile, [this] {
    if (const auto selected = library_.selectedSession()) actions_.saveFile(selected->session);
  });
  run(commands_.reveal, [this] { revealSelected(); });
  run(commands_.rename, [this] { renameSelected(); });
  run(commands_.statistics, [this] { showStatistics(); });
  run(commands_.combine, [this] { combineSelected(); });
  run(commands_.undo, [this] { actions_.undoDelete(); });
  run(commands_.nextMatch, [this] { stepToMatch(true); });
  run(commands_.previousMatch, [this] { stepToMatch(false); });
  run(commands_.refresh, [this] { library_.reload(); });
  run(commands_.sidebar, [this] { setSidebarVisible(!isSidebarVisible()); });
  run(commands_.find, [this] {
    // The table has no bar of its own; the search marks its cells too.
    if (!detail_->openFindBar()) searchField_->setFocus(Qt::ShortcutFocusReason);
  });
  run(commands_.print, [this] {
    const auto selected = library_.selectedSession();
    if (selected) actions_.printSession(selected->session, detail_->printOptions());
  });
  run(commands_.copyLine, [this] { detail_->copyCurrentLine(); });
  run(commands_.correctLine, [this] { changeLine(actions_.correctLine); });
  run(commands_.renameSpeaker, [this] { changeLine(actions_.renameSpeaker); });
  run(commands_.undoCorrection, [this] { changeLine(actions_.undoCorrection); });
}

void HistoryView::enableActions() {
  commands_.combine->setEnabled(sidebar_->selectedSessions().size() > 1);
  commands_.undo->setEnabled(library_.canUndoDelete());
  enableLineActions();
}

void HistoryView::enableLineActions() {
  const Line* line = detail_->currentLine();
  commands_.copyLine->setEnabled(line);
  commands_.correctLine->setEnabled(line);
  commands_.undoCorrection->setEnabled(line && line->original);
  commands_.renameSpeaker->setEnabled(line && line->speaker);
}

void HistoryView::showContextMenu(const QPoint& position) {
  QMenu menu(this);
  menu.addAction(L("Show in File Manager", "파일 관리자에서 보기"), this,
                 &HistoryView::revealSelected);
  menu.addAction(L("Export…", "내보내기…"), this, &HistoryView::exportSelected);
  menu.addAction(L("Delete", "삭제"), this, &HistoryView::deleteSelected);
  menu.addAction(commands_.rename);
  if (commands_.combine->isEnabled()) menu.addAction(commands_.combine);
  menu.addAction(commands_.statistics);
  menu.exec(position);
}

void HistoryView::deleteSelected() {
  const SavedSessions selected = sidebar_->selectedSessions();
  if (selected.size() < 2) return actions_.deleteSelection(visibleURLs());
  QList<QUrl> urls;
  for (const auto& session : selected) urls.append(session->url);
  actions_.deleteSessions(urls);
}

void HistoryView::stepToMatch(bool forward) {
  if (detail_->stepInFindBar(forward)) return;
  const QList<QUrl> urls = visibleURLs();
  if (searchField_->text().isEmpty() || urls.isEmpty() || detail_->stepToMatch(forward)) return;
  const auto selected = library_.selection();
  const qsizetype place = selected ? urls.indexOf(*selected) : -1;
  const qsizetype last = urls.size() - 1;
  // Around the ends of the list.
  const qsizetype next = forward ? (place < last ? place + 1 : 0) : (place > 0 ? place - 1 : last);
  library_.select(urls[next]);
  detail_->showMatchAtEnd(!forward);
}

void HistoryView::renameSelected() {
  if (const auto selected = library_.selectedSession()) actions_.renameSession(*selected);
}

void HistoryView::combineSelected() {
  if (const auto session = combinedSelection()) actions_.saveCombined(*session);
}

std::optional<CaptionSession> HistoryView::combinedSelection() {
  auto parts = library_.read(sidebar_->selectedSessions());
  if (parts) return combined(std::move(*parts));
  // The listing says that one cannot be read.
  library_.reload();
  return std::nullopt;
}

void HistoryView::changeLine(const std::function<void(const SavedSession&, const Line&)>& change) {
  const auto selected = library_.selectedSession();
  const Line* line = detail_->currentLine();
  if (!selected || !line) return;
  // A copy: the transcript is replaced meanwhile.
  const Line chosen = *line;
  change(*selected, chosen);
}

void HistoryView::showStatistics() {
  if (const auto selected = library_.selectedSession()) actions_.showStatistics(selected->session);
}

void HistoryView::exportSelected() {
  if (sidebar_->selectedSessions().size() > 1) {
    if (const auto session = combinedSelection()) actions_.exportSession(*session, std::nullopt);
    return;
  }
  if (const auto selected = library_.selectedSession()) {
    actions_.exportSession(selected->session, detail_->selectedLines());
  }
}

void HistoryView::revealSelected() {
  if (const auto selected = library_.selectedSession()) actions_.revealFile(selected->url);
}

}  // namespace velun
