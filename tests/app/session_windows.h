// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_stage.h"
#include "app/session_library.h"

#include <QApplication>
#include <QWidget>

namespace velun::test {

/// A saved session in the stage's folder.
inline QUrl writeSession(AppStage& stage, const QString& text) {
  CaptionSession session;
  Line line;
  line.text = text;
  session.lines.push_back(line);
  return stage.store.save(session);
}

/// The window of saved sessions after the listing, with its first session selected.
inline HistoryViewModel& openHistory(AppStage& stage) {
  HistoryViewModel& library = stage.coordinator().sessions().library();
  stage.perform(AppCommand::showHistory);
  [&] {
    QTRY_VERIFY(!library.isReloading() && !library.sessions().empty());
  }();
  library.select(library.sessions().front()->url);
  [&] {
    QTRY_VERIFY(stage.coordinator().sessions().isKeyWindow());
  }();
  return library;
}

/// The visible window with this title; null if there is none.
inline QWidget* visibleWindow(const QString& title) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowTitle() == title) return window;
  }
  return nullptr;
}

/// Chooses an action of a window.
inline void choose(const QString& text) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    for (QAction* action : window->findChildren<QAction*>()) {
      if (action->text() == text && action->isEnabled()) return action->trigger();
    }
  }
  QFAIL(qPrintable(text));
}

/// Chooses an action of the window of saved sessions, in which the only session is selected.
inline void chooseInLibrary(AppStage& stage, const QString& text) {
  stage.perform(AppCommand::showHistory);
  SessionLibrary& sessions = stage.coordinator().sessions();
  QTRY_COMPARE(sessions.library().sessions().size(), std::size_t(1));
  sessions.library().select(sessions.library().sessions()[0]->url);
  choose(text);
}

}  // namespace velun::test
