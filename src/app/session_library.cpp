// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/session_library.h"

#include "captions/caption_view_model.h"
#include "captions/recording_confirmation.h"
#include "language/localization.h"
#include "model/session_work.h"
#include "model/speaker.h"
#include "platform/desktop/file_manager.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/file_access.h"
#include "ui/common/window_presentation.h"
#include "ui/library/export_window_controller.h"
#include "ui/library/history_window_controller.h"
#include "ui/library/print_session.h"
#include "ui/library/recordings_view.h"
#include "ui/library/save_session_file.h"

namespace velun {

namespace {

constexpr QSize kRecordingsSize(520, 420);

QString recordingsTitle() {
  return L("Caption Recordings", "녹음 파일 자막 만들기");
}

}  // namespace

SessionLibrary::SessionLibrary(CaptionViewModel& model, RecordingQueue& recordings,
                               const AppServices& services,
                               std::function<void(QWidget*)> windowMade)
    : model_(model),
      services_(services),
      windowMade_(std::move(windowMade)),
      library_(model.store(), services.trash),
      recordings_(recordings) {
  connect(&recordings_, &RecordingQueue::sessionSaved, &library_, &HistoryViewModel::reload);
  connect(&library_, &HistoryViewModel::selectionChanged, this, &SessionLibrary::selectionChanged);
  connect(&library_, &HistoryViewModel::filesOpened, this,
          [this](int count, const QStringList& problems) {
            if (count > 0) showHistory();
            if (!problems.isEmpty()) showError(problems.join(u'\n'));
          });
}

SessionLibrary::~SessionLibrary() = default;

HistoryWindowController& SessionLibrary::historyWindow() {
  if (!historyWindow_) {
    historyWindow_ = std::make_unique<HistoryWindowController>(library_, model_.settings(),
                                                               historyActions(), services_.clock);
    windowMade_(&historyWindow_->window());
  }
  return *historyWindow_;
}

HistoryActions SessionLibrary::historyActions() {
  HistoryActions actions;
  actions.openFile = [this] {
    openSessionFile();
  };
  actions.saveFile = [this](const CaptionSession& session) {
    saveFile(session);
  };
  actions.revealFile = [this](const QUrl& file) {
    reveal(file);
  };
  actions.exportSession = [this](const CaptionSession& session,
                                 const std::optional<LineRange>& selected) {
    exportSession(session, selected);
  };
  actions.renameSession = [this](const SavedSession& saved) {
    rename(saved);
  };
  actions.showStatistics = [this](const CaptionSession& session) {
    services_.question.ask({.message = session.title,
                            .informativeText = statisticsText(session),
                            .buttons = {L("OK", "확인")}});
  };
  actions.printSession = [this](const CaptionSession& session, const ExportOptions& options) {
    printSession(session, options);
  };
  actions.correctLine = [this](const SavedSession& saved, const Line& line) {
    if (const auto text = services_.askCorrection(line)) correctLine(saved, line, *text);
  };
  actions.undoCorrection = [this](const SavedSession& saved, const Line& line) {
    if (line.original) correctLine(saved, line, *line.original);
  };
  actions.renameSpeaker = [this](const SavedSession& saved, const Line& line) {
    if (line.speaker) renameSpeaker(saved, *line.speaker);
  };
  actions.saveCombined = [this](const CaptionSession& session) {
    saveCombined(session);
  };
  actions.deleteSessions = [this](const QList<QUrl>& urls) {
    deleteSessions(urls);
  };
  actions.undoDelete = [this] {
    undoDelete();
  };
  actions.openFiles = [this](const QList<QUrl>& files) {
    open(files);
  };
  actions.deleteSelection = [this](const QList<QUrl>& visible) {
    deleteHistorySelection(visible);
  };
  return actions;
}

void SessionLibrary::showHistory() {
  historyWindow().show();
}

bool SessionLibrary::isKeyWindow() const {
  return historyWindow_ && historyWindow_->isKeyWindow();
}

void SessionLibrary::exportCurrentSession() {
  const auto selected = isKeyWindow() ? library_.selectedSession() : nullptr;
  exportSession(selected ? selected->session : model_.session());
}

void SessionLibrary::exportSession(const CaptionSession& session,
                                   const std::optional<LineRange>& selected) {
  if (!exportWindow_) {
    exportWindow_ = std::make_unique<ExportWindowController>(services_.panels, windowMade_);
  }
  exportWindow_->show(session, selected);
}

void SessionLibrary::openSessionFile() {
  const OpenPanelRequest request{
      .title = L("Open Velun Session", "Velun 기록 열기"),
      .message =
          L("Choose a Velun session (.json) or a Markdown transcript from an earlier version "
            "(.md).",
            "Velun 기록 (.json) 또는 이전 버전의 Markdown 기록 (.md)을 선택하세요."),
      .filterName = L("Velun sessions", "Velun 기록"),
      .patterns = {"*.json", "*.md"}};
  if (const auto file = services_.panels.open(request)) open({*file});
}

void SessionLibrary::open(const QList<QUrl>& files) {
  QList<QUrl> sessions;
  QStringList recordings;
  for (const QUrl& file : files) {
    const bool isSound = services_.recordingSource && isRecording(file);
    if (isSound) recordings.append(file.toLocalFile());
    if (!isSound) sessions.append(file);
  }
  if (!sessions.isEmpty()) library_.open(sessions);
  if (recordings.isEmpty()) return;
  recordings_.add(recordings);
  showRecordings();
}

void SessionLibrary::captionRecording() {
  if (recordings_.items().empty()) {
    chooseRecordings();
  } else {
    showRecordings();
  }
}

void SessionLibrary::chooseRecordings() {
  const OpenPanelRequest request{
      .title = recordingsTitle(),
      .message = L("Choose a sound or video file.", "소리나 영상 파일을 선택하세요."),
      .filterName = L("Sound and video", "소리와 영상"),
      .patterns = {"*.3gp",  "*.aac",  "*.aif", "*.aiff", "*.amr", "*.avi", "*.flac",
                   "*.flv",  "*.m4a",  "*.m4v", "*.mka",  "*.mkv", "*.mov", "*.mp3",
                   "*.mp4",  "*.mpeg", "*.mpg", "*.mts",  "*.oga", "*.ogg", "*.ogv",
                   "*.opus", "*.ts",   "*.wav", "*.webm", "*.wma", "*.wmv"},
      .offersAllFiles = true};
  if (const auto file = services_.panels.open(request)) open({*file});
}

void SessionLibrary::showRecordings() {
  if (!recordingsWindow_) {
    RecordingsView::Actions actions;
    actions.add = [this] {
      chooseRecordings();
    };
    actions.showSession = [this](const QUrl& file) {
      open({file});
    };
    actions.remove = [this](const RecordingQueue::Item& item) {
      removeRecording(item);
    };
    auto view = std::make_unique<RecordingsView>(recordings_, std::move(actions));
    recordingsWindow_ =
        WindowPresentation::makeWindow(recordingsTitle(), kRecordingsSize, std::move(view), true);
    recordingsWindow_->setObjectName("Recordings");
    windowMade_(recordingsWindow_.get());
  }
  WindowPresentation::present(*recordingsWindow_);
}

void SessionLibrary::removeRecording(const RecordingQueue::Item& item) {
  const int id = item.id;
  if (confirmRemoving(recordings_, item, services_.question)) recordings_.remove(id);
}

void SessionLibrary::saveHistoryFile() {
  if (const auto selected = library_.selectedSession()) saveFile(selected->session);
}

void SessionLibrary::saveFile(const CaptionSession& session) {
  try {
    saveSessionFile(session, L("Save Session File", "기록 파일 저장"),
                    {.format = SessionFormat::json}, services_.panels);
  } catch (const std::exception& error) {
    showError(descriptionOf(error));
  }
}

void SessionLibrary::printSession(const CaptionSession& session, const ExportOptions& options) {
  const std::shared_ptr<QPrinter> printer = services_.askPrinter(session.title);
  if (!printer) return;
  printing_.start(
      [printer, html = QString::fromUtf8(session.exportAs(options))](const std::stop_token&) {
        try {
          print(html, *printer);
        } catch (const std::exception&) {
          return std::current_exception();
        }
        return std::exception_ptr();
      },
      [this](const std::exception_ptr& failed) { showFailure(failed); });
}

void SessionLibrary::reveal(const QUrl& file) {
  services_.files.reveal(file);
}

void SessionLibrary::deleteHistorySelection(const QList<QUrl>& visible) {
  std::exception_ptr failed;
  try {
    const std::optional<QUrl> deleted = library_.deleteSelection(visible);
    if (!deleted) return;
    model_.savedFileWasDeleted(*deleted);
  } catch (const std::exception&) {
    // Something else may have removed the file.
    failed = std::current_exception();
  }
  library_.reload();
  showNotDeleted(failed);
}

void SessionLibrary::deleteSessions(const QList<QUrl>& urls) {
  std::exception_ptr failed;
  for (const QUrl& deleted : library_.deleteSessions(urls, failed)) {
    model_.savedFileWasDeleted(deleted);
  }
  library_.reload();
  showNotDeleted(failed);
}

void SessionLibrary::undoDelete() {
  std::exception_ptr failed;
  for (const QUrl& restored : library_.undoDelete(failed)) model_.savedFileIsBack(restored);
  showFailure(failed);
}

void SessionLibrary::renameSession() {
  const auto selected = isKeyWindow() ? library_.selectedSession() : nullptr;
  if (selected) return rename(*selected);
  if (const auto title = services_.askTitle(model_.session().title)) model_.setTitle(*title);
}

void SessionLibrary::rename(const SavedSession& saved) {
  const auto title = services_.askTitle(saved.session.title);
  if (!title) return;
  try {
    if (isCurrent(saved)) {
      model_.setTitle(*title);
      library_.reload();
    } else {
      library_.rename(saved.url, *title);
    }
  } catch (const std::exception& error) {
    showError(descriptionOf(error));
  }
}

bool SessionLibrary::isCurrent(const SavedSession& saved) const {
  // A copy in another file has the same id.
  return model_.savedURL() && canonicalPath(saved.url) == canonicalPath(*model_.savedURL());
}

void SessionLibrary::correctLine(const SavedSession& saved, const Line& line, const QString& text) {
  const QString trimmed = text.trimmed();
  if (trimmed.isEmpty() || trimmed == line.text) return;
  try {
    if (isCurrent(saved)) {
      model_.correctLine(line.id, trimmed);
      library_.reload();
    } else {
      library_.correctLine(saved.url, line, trimmed);
    }
  } catch (const std::exception& error) {
    showError(descriptionOf(error));
  }
}

void SessionLibrary::renameSpeaker(const SavedSession& saved, const QString& speaker) {
  const auto name = services_.askSpeaker(speaker, speakersOf(saved.session.lines));
  if (!name) return;
  try {
    if (isCurrent(saved)) {
      model_.renameSpeaker(speaker, *name);
      library_.reload();
    } else {
      library_.renameSpeaker(saved.url, speaker, *name);
    }
  } catch (const std::exception& error) {
    showError(descriptionOf(error));
  }
}

void SessionLibrary::saveCombined(const CaptionSession& session) {
  try {
    open({model_.store().save(session)});
  } catch (const std::exception& error) {
    showError(descriptionOf(error));
  }
}

void SessionLibrary::updateTitles() {
  if (historyWindow_) historyWindow_->updateTitle();
  if (exportWindow_) exportWindow_->updateTitle();
  if (recordingsWindow_) recordingsWindow_->setWindowTitle(recordingsTitle());
}

void SessionLibrary::showFailure(const std::exception_ptr& failed) {
  try {
    if (failed) std::rethrow_exception(failed);
  } catch (const std::exception& error) {
    showError(descriptionOf(error));
  }
}

void SessionLibrary::showNotDeleted(const std::exception_ptr& failed) {
  try {
    if (failed) std::rethrow_exception(failed);
  } catch (const std::exception& error) {
    const QString description = descriptionOf(error);
    showError(L("Couldn’t delete the session: " + description,
                "기록을 삭제하지 못했습니다: " + description));
  }
}

void SessionLibrary::showError(const QString& message) {
  services_.question.ask(errorQuestion(message));
}

}  // namespace velun
