// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/history_commands.h"

#include "language/localization.h"
#include "ui/common/symbol.h"

#include <QAction>
#include <QWidget>

namespace velun {

namespace {

QAction* makeAction(QWidget& window, const QKeySequence& key = {}, const QString& symbol = {}) {
  auto* action = new QAction(&window);
  action->setObjectName(symbol);
  if (!symbol.isEmpty()) action->setIcon(symbolIcon(symbol));
  action->setShortcut(key);
  action->setShortcutContext(Qt::WindowShortcut);
  // In the menus of the tool bar and of the list, too.
  action->setShortcutVisibleInContextMenu(true);
  window.addAction(action);
  return action;
}

}  // namespace

void label(QAction* action, const QString& text, const QString& help) {
  action->setText(text);
  action->setToolTip(help.isEmpty() ? text : help);
}

HistoryCommands::HistoryCommands(QWidget& window)
    : remove(makeAction(window, Qt::CTRL | Qt::Key_Backspace, QStringLiteral("trash"))),
      exportAs(makeAction(window, {}, QStringLiteral("square.and.arrow.up"))),
      openFile(makeAction(window)),
      saveFile(makeAction(window)),
      reveal(makeAction(window)),
      rename(makeAction(window, Qt::Key_F2)),
      statistics(makeAction(window)),
      combine(makeAction(window)),
      undo(makeAction(window, QKeySequence::Undo)),
      nextMatch(makeAction(window, QKeySequence::FindNext)),
      previousMatch(makeAction(window, QKeySequence::FindPrevious)),
      refresh(makeAction(window, Qt::Key_F5)),
      sidebar(makeAction(window, Qt::Key_F9, QStringLiteral("sidebar.left"))),
      find(makeAction(window, QKeySequence::Find)),
      print(makeAction(window, QKeySequence::Print)),
      copyLine(makeAction(window, Qt::CTRL | Qt::SHIFT | Qt::Key_C)),
      correctLine(makeAction(window, Qt::CTRL | Qt::SHIFT | Qt::Key_E)),
      renameSpeaker(makeAction(window)),
      undoCorrection(makeAction(window)) {}

void HistoryCommands::translate() const {
  label(remove, L("Delete", "삭제"),
        L("Delete (%1) · Moves to Trash", "삭제 (%1) · 휴지통으로 이동")
            .arg(remove->shortcut().toString(QKeySequence::NativeText)));
  label(exportAs, L("Export", "내보내기"));
  label(openFile, L("Open File…", "파일 열기…"));
  label(saveFile, L("Save as File…", "파일로 저장…"));
  label(reveal, L("Show in File Manager", "파일 관리자에서 보기"));
  label(rename, L("Rename…", "이름 변경…"));
  label(statistics, L("Statistics", "통계"));
  label(combine, L("Combine Sessions", "세션 합치기"));
  label(undo, L("Undo Delete", "삭제 취소"));
  label(refresh, L("Refresh", "새로고침"));
  label(sidebar, L("Show/Hide Sidebar", "사이드바 보기/숨기기"));
  label(find, L("Find in Transcript", "자막에서 찾기"));
  label(print, L("Print…", "인쇄…"));
  label(copyLine, L("Copy Line", "문장 복사"));
  label(correctLine, L("Correct Line…", "문장 교정…"));
  label(renameSpeaker, L("Name Speaker…", "화자 이름 지정…"),
        L("The name holds for every line of this speaker in the session",
          "이 기록에서 같은 화자의 모든 문장에 적용됩니다"));
  label(undoCorrection, L("Undo Correction", "교정 취소"));
}

}  // namespace velun
