// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/app_commands.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"

#include <algorithm>
#include <optional>
#include <QActionGroup>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QWindow>

namespace velun {

struct AppCommands::Row {
  AppCommand command;
  const char* name = "";
  QString text = {};
  QKeySequence shortcut = {};
  /// The same command on keyboards where the first is hard to reach.
  QKeySequence otherShortcut = {};
  bool isEnabled = true;
  /// Whether it is checked; none if it has no check mark.
  std::optional<bool> mark = {};
  QVariant state = {};
};

namespace {

QString captionsText(const CaptionViewModel& model) {
  if (model.isSwitching()) return L("Switching Captions…", "자막 전환 중…");
  return model.isRunning() ? L("Stop Captions", "자막 중지") : L("Start Captions", "자막 시작");
}

}  // namespace

/// In the order of `AppCommand`.
std::vector<AppCommands::Row> AppCommands::rows() const {
  using enum AppCommand;
  const AppSettings& settings = model_.settings();
  const bool isSettled = !model_.isSwitching();
  const bool hasLines = !model_.lines().empty();
  const WindowState windows = windows_();
  const bool hasDocument = windows.isHistoryActive ? windows.hasSelection : hasLines;
  return {
      {.command = toggleCaptions,
       .name = "toggle-captions",
       .text = captionsText(model_),
       .isEnabled = isSettled,
       .state = model_.isRunning()},
      {.command = selectComputer,
       .name = "select-computer",
       .text = title(AudioInput::computer),
       .isEnabled = isSettled,
       .mark = settings.inputChoice() == InputChoice::computer},
      {.command = selectMicrophone,
       .name = "select-microphone",
       .text = title(AudioInput::microphone),
       .isEnabled = isSettled,
       .mark = settings.useMic()},
      {.command = selectBoth,
       .name = "select-both",
       .text = title(InputChoice::both),
       .isEnabled = isSettled,
       .mark = settings.inputChoice() == InputChoice::both},
      {.command = toggleKeepOnTop,
       .name = "toggle-keep-on-top",
       .text = L("Keep on Top", "항상 위에 표시"),
       .mark = settings.keepOnTop(),
       .state = settings.keepOnTop()},
      {.command = toggleClickThrough,
       .name = "toggle-click-through",
       .text = L("Click Through Captions", "자막 창 클릭 통과"),
       .shortcut = Qt::CTRL | Qt::SHIFT | Qt::Key_L,
       .isEnabled = windows.canClickThrough,
       .mark = settings.clickThrough(),
       .state = settings.clickThrough()},
      {.command = togglePanel,
       .name = "toggle-panel",
       .text = L("Show/Hide Caption Window", "자막 창 보기/숨기기"),
       .shortcut = Qt::CTRL | Qt::Key_L,
       .state = windows.isPanelVisible},
      {.command = showPanel, .name = "show-panel"},
      {.command = restorePosition,
       .name = "restore-position",
       .text = L("Restore Default Position", "기본 위치로 복원")},
      {.command = movePanel,
       .name = "move-panel",
       .text = L("Move Caption Window", "자막 창 옮기기"),
       .shortcut = Qt::CTRL | Qt::Key_M,
       .isEnabled = windows.canPlacePanel},
      {.command = movePanelToNextScreen,
       .name = "move-panel-to-next-screen",
       .text = L("Move to Next Screen", "다음 화면으로 옮기기"),
       .shortcut = Qt::CTRL | Qt::SHIFT | Qt::Key_M,
       .isEnabled = windows.canPlacePanel && QGuiApplication::screens().size() > 1},
      {.command = biggerText,
       .name = "bigger-text",
       .text = L("Bigger Text", "글자 크게"),
       .shortcut = Qt::CTRL | Qt::Key_Plus,
       .otherShortcut = Qt::CTRL | Qt::Key_Equal},
      {.command = smallerText,
       .name = "smaller-text",
       .text = L("Smaller Text", "글자 작게"),
       .shortcut = Qt::CTRL | Qt::Key_Minus},
      {.command = defaultTextSize,
       .name = "default-text-size",
       .text = L("Default Text Size", "기본 글자 크기"),
       .shortcut = Qt::CTRL | Qt::Key_0},
      {.command = newSession,
       .name = "new-session",
       .text = L("New Session", "새 세션"),
       .shortcut = Qt::CTRL | Qt::Key_N,
       .isEnabled = isSettled},
      {.command = saveSession,
       .name = "save-session",
       .text = L("Save Current Session", "현재 세션 저장"),
       .isEnabled = hasLines},
      {.command = saveDocument,
       .text = windows.isHistoryActive ? L("Save Session File…", "기록 파일 저장…")
                                       : L("Save Current Session", "현재 세션 저장"),
       .shortcut = Qt::CTRL | Qt::Key_S,
       .isEnabled = hasDocument},
      {.command = exportCurrentSession,
       .name = "export-session",
       .text = L("Export…", "내보내기…"),
       .shortcut = Qt::CTRL | Qt::SHIFT | Qt::Key_S,
       .isEnabled = hasDocument},
      {.command = renameSession,
       .name = "rename-session",
       .text = L("Rename Session…", "세션 이름 변경…")},
      {.command = openSessionFile,
       .name = "open-session-file",
       .text = L("Open Session File…", "기록 파일 열기…"),
       .shortcut = Qt::CTRL | Qt::Key_O},
      {.command = captionRecording,
       .name = "caption-recording",
       .text = L("Caption a Recording…", "녹음 파일 자막 만들기…")},
      {.command = openSessionsFolder, .name = "open-sessions-folder"},
      {.command = showHistory,
       .name = "show-history",
       .text = L("Saved Sessions…", "저장 기록…"),
       .shortcut = Qt::CTRL | Qt::SHIFT | Qt::Key_H},
      {.command = showSettings,
       .name = "show-settings",
       .text = L("Settings…", "설정…"),
       .shortcut = Qt::CTRL | Qt::Key_Comma},
      {.command = showModels,
       .name = "show-models",
       .text = L("Choose Another Recognizer", "다른 인식기 선택")},
      {.command = openSoundSettings,
       .text = L("Open Sound Settings", "소리 설정 열기"),
       .isEnabled = windows.canOpenSoundSettings},
      {.command = checkForUpdates,
       .name = "check-for-updates",
       .text = L("Check for Updates…", "업데이트 확인…")},
      {.command = showAbout, .name = "show-about", .text = L("About Velun", "Velun 정보")},
      {.command = terminate,
       .name = "quit",
       .text = L("Quit Velun", "Velun 종료"),
       .shortcut = Qt::CTRL | Qt::Key_Q},
  };
}

AppCommands::AppCommands(const CaptionViewModel& model, std::function<WindowState()> windows)
    : model_(model), windows_(std::move(windows)) {
  for (const Row& row : rows()) {
    Q_ASSERT(actions_.size() == static_cast<std::size_t>(row.command));
    auto* action = new QAction(this);
    action->setObjectName(row.name);
    action->setShortcuts({row.shortcut, row.otherShortcut});
    action->setCheckable(row.mark.has_value());
    // Qt would otherwise choose a menu by the text.
    action->setMenuRole(QAction::NoRole);
    connect(action, &QAction::triggered, this, [this, command = row.command] {
      Q_EMIT triggered(command);
      // A checkable action has toggled its own mark, even if the command did nothing.
      refresh();
    });
    actions_.push_back(action);
  }
  auto* inputs = new QActionGroup(this);
  inputs->addAction(&action(AppCommand::selectComputer));
  inputs->addAction(&action(AppCommand::selectMicrophone));
  inputs->addAction(&action(AppCommand::selectBoth));

  using Model = CaptionViewModel;
  for (const auto signal :
       {&Model::isRunningChanged, &Model::isSwitchingChanged, &Model::sessionChanged,
        &Model::isSavingSessionChanged, &Model::savedURLChanged, &Model::saveErrorChanged}) {
    connect(&model_, signal, this, &AppCommands::refresh);
  }
  for (const auto signal : {&AppSettings::inputChoiceChanged, &AppSettings::keepOnTopChanged,
                            &AppSettings::clickThroughChanged}) {
    connect(&model_.settings(), signal, this, &AppCommands::refresh);
  }
  connect(&Localization::shared(), &Localization::languageChanged, this, &AppCommands::refresh);
  connect(qApp, &QGuiApplication::focusWindowChanged, this, &AppCommands::refresh);
  for (const auto signal : {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved}) {
    connect(qApp, signal, this, &AppCommands::refresh, Qt::QueuedConnection);
  }
  refresh();
}

QAction& AppCommands::action(AppCommand command) const {
  return *actions_[static_cast<std::size_t>(command)];
}

QAction* AppCommands::find(const QString& name) const {
  const auto found = std::ranges::find(actions_, name, &QAction::objectName);
  return name.isEmpty() || found == actions_.end() ? nullptr : *found;
}

void AppCommands::refresh() {
  for (const Row& row : rows()) {
    QAction& action = this->action(row.command);
    action.setText(row.text);
    action.setEnabled(row.isEnabled);
    action.setChecked(row.mark.value_or(false));
    action.setData(row.state);
  }
  Q_EMIT refreshed();
}

QAction* addItem(QMenu& menu, QAction& command) {
  QAction* item = menu.addAction(QString(), &command, &QAction::trigger);
  item->setMenuRole(QAction::NoRole);
  item->setCheckable(command.isCheckable());
  if (command.actionGroup()) {
    auto* group = menu.findChild<QActionGroup*>();
    item->setActionGroup(group ? group : new QActionGroup(&menu));
  }
  showCommand(*item, command);
  return item;
}

void showCommand(QAction& item, const QAction& command) {
  item.setText(command.text());
  item.setEnabled(command.isEnabled());
  item.setChecked(command.isChecked());
}

}  // namespace velun
