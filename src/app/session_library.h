// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_services.h"
#include "platform/foundation/latest_job.h"
#include "ui/library/history_actions.h"
#include "ui/library/history_view_model.h"

#include <exception>
#include <functional>
#include <memory>
#include <QObject>

class QWidget;

namespace velun {

class CaptionViewModel;
class ExportWindowController;
class HistoryWindowController;

/// The saved sessions, their windows, and the commands that work on them. Main thread.
class SessionLibrary final : public QObject {
  Q_OBJECT

 public:
  /// The references and everything in `services` must outlive the library. `windowMade` is called
  /// with every window before it is first shown.
  SessionLibrary(CaptionViewModel& model, RecordingQueue& recordings, const AppServices& services,
                 std::function<void(QWidget*)> windowMade);
  ~SessionLibrary() override;

  HistoryViewModel& library() { return library_; }

  void showHistory();

  /// Exports the selected session if the saved-sessions window is active, else the current one.
  void exportCurrentSession();

  /// Lets the user choose a session file or an earlier transcript and opens it.
  void openSessionFile();
  /// Shows the files among the saved sessions, and an alert for those that cannot be read.
  void open(const QList<QUrl>& files);

  /// Shows the recordings that are captioned; without one, lets the user choose it first.
  void captionRecording();

  /// Lets the user choose a file and writes the selected session to it, if there is one.
  void saveHistoryFile();
  /// Deletes the selected session. `visible` are the listed files in display order.
  void deleteHistorySelection(const QList<QUrl>& visible);

  /// Asks for another title of the selected session if the saved-sessions window is active, else of
  /// the current one.
  void renameSession();

  /// Whether the saved-sessions window has the keyboard.
  bool isKeyWindow() const;
  bool hasSelection() const { return library_.selectedSession() != nullptr; }

  /// Sets the window titles in the interface language.
  void updateTitles();

 Q_SIGNALS:
  void selectionChanged();

 private:
  HistoryWindowController& historyWindow();
  void chooseRecordings();
  void showRecordings();
  void removeRecording(const RecordingQueue::Item& item);
  HistoryActions historyActions();
  void rename(const SavedSession& saved);
  void correctLine(const SavedSession& saved, const Line& line, const QString& text);
  void renameSpeaker(const SavedSession& saved, const QString& speaker);
  /// Whether a listed session is the current one, which writes its file itself, with lines that are
  /// newer than the listing.
  bool isCurrent(const SavedSession& saved) const;
  void saveCombined(const CaptionSession& session);
  void deleteSessions(const QList<QUrl>& urls);
  void undoDelete();
  void exportSession(const CaptionSession& session, const std::optional<LineRange>& selected = {});
  void saveFile(const CaptionSession& session);
  void printSession(const CaptionSession& session, const ExportOptions& options);
  void reveal(const QUrl& file);
  /// Show why something failed, if it did.
  void showFailure(const std::exception_ptr& failed);
  void showNotDeleted(const std::exception_ptr& failed);
  void showError(const QString& message);

  CaptionViewModel& model_;
  AppServices services_;
  std::function<void(QWidget*)> windowMade_;
  HistoryViewModel library_;
  std::unique_ptr<HistoryWindowController> historyWindow_;
  std::unique_ptr<ExportWindowController> exportWindow_;
  RecordingQueue& recordings_;
  std::unique_ptr<QWidget> recordingsWindow_;
  LatestJob printing_;
};

}  // namespace velun
