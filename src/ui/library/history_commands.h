// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QAction;
class QWidget;

namespace velun {

/// Sets an action's text and tool tip; the tool tip is the text without `help`.
void label(QAction* action, const QString& text, const QString& help = QString());

/// The actions of the window of saved sessions, with their symbols and keys. They belong to the
/// window and do nothing by themselves. Main thread.
struct HistoryCommands {
  explicit HistoryCommands(QWidget& window);

  /// Sets the texts in the interface language.
  void translate() const;

  QAction* remove;
  QAction* exportAs;
  QAction* openFile;
  QAction* saveFile;
  QAction* reveal;
  QAction* rename;
  QAction* statistics;
  QAction* combine;
  QAction* undo;
  QAction* nextMatch;
  QAction* previousMatch;
  QAction* refresh;
  QAction* sidebar;
  QAction* find;
  QAction* print;
  QAction* copyLine;
  QAction* correctLine;
  QAction* renameSpeaker;
  QAction* undoCorrection;
};

}  // namespace velun
