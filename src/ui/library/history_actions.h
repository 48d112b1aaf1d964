// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "ui/library/history_view_model.h"

#include <functional>
#include <QList>
#include <QUrl>

namespace velun {

/// The commands of the window of saved sessions. Main thread.
struct HistoryActions {
  std::function<void()> openFile;
  /// Files that were dropped on the window: sessions are shown, recordings are captioned.
  std::function<void(const QList<QUrl>&)> openFiles;
  std::function<void(const CaptionSession&)> saveFile;
  std::function<void(const QUrl&)> revealFile;
  /// With the lines that are selected in its transcript.
  std::function<void(const CaptionSession&, std::optional<LineRange>)> exportSession;
  /// Asks for another title.
  std::function<void(const SavedSession&)> renameSession;
  std::function<void(const CaptionSession&)> showStatistics;
  /// Prints a session as the options say.
  std::function<void(const CaptionSession&, const ExportOptions&)> printSession;
  /// Asks for the right text of a line.
  std::function<void(const SavedSession&, const Line&)> correctLine;
  /// Gives a line its recognized text back.
  std::function<void(const SavedSession&, const Line&)> undoCorrection;
  /// Asks for the name of the speaker of a line.
  std::function<void(const SavedSession&, const Line&)> renameSpeaker;
  /// Keeps the session that several were combined to.
  std::function<void(const CaptionSession&)> saveCombined;
  std::function<void(const QList<QUrl>&)> deleteSessions;
  std::function<void()> undoDelete;
  /// Deletes the selected session if it is among the visible ones, given in display order.
  std::function<void(const QList<QUrl>&)> deleteSelection;
};

}  // namespace velun
