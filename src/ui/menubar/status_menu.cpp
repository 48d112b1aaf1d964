// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/status_menu.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"

namespace velun {

namespace {

QString captionsTitle(const CaptionViewModel& model) {
  if (model.isTransitioning()) return L("Switching Captions…", "자막 전환 중…");
  return model.isRunning() ? L("Stop Captions", "자막 중지") : L("Start Captions", "자막 시작");
}

MenuItem saveItem(const CaptionViewModel& model) {
  const bool failed = model.saveError().has_value();
  const bool written = model.savedURL().has_value();
  return {.command = AppCommand::saveSession,
          .title = model.isSavingSession() ? L("Saving Current Session", "현재 세션 저장 중")
                                           : L("Save Current Session", "현재 세션 저장"),
          .mark = written && !failed ? MenuItem::Mark::check : MenuItem::Mark::none,
          .isChecked = written && !failed,
          .isEnabled = !model.lines().empty() && (!written || failed)};
}

}  // namespace

std::vector<MenuItem> statusMenuItems(const CaptionViewModel& model, bool isPanelVisible) {
  using enum AppCommand;
  const AppSettings& settings = model.settings();
  const bool isSettled = !model.isTransitioning();
  const MenuItem separator;
  return {
      {.command = toggleCaptions, .title = captionsTitle(model), .isEnabled = isSettled},
      separator,
      {.command = selectComputer,
       .title = title(AudioInput::computer),
       .mark = MenuItem::Mark::radio,
       .isChecked = !settings.useMic(),
       .isEnabled = isSettled},
      {.command = selectMicrophone,
       .title = title(AudioInput::microphone),
       .mark = MenuItem::Mark::radio,
       .isChecked = settings.useMic(),
       .isEnabled = isSettled},
      separator,
      {.command = toggleKeepOnTop,
       .title = L("Keep on Top", "항상 위에 표시"),
       .mark = MenuItem::Mark::check,
       .isChecked = settings.keepOnTop()},
      {.command = togglePanel,
       .title = isPanelVisible ? L("Hide Caption Window", "자막 창 숨기기")
                               : L("Show Caption Window", "자막 창 보기")},
      {.command = restorePosition, .title = L("Restore Default Position", "기본 위치로 복원")},
      separator,
      saveItem(model),
      {.command = showHistory, .title = L("Saved Sessions…", "저장 기록…")},
      {.command = newSession, .title = L("New Session", "새 세션"), .isEnabled = isSettled},
      separator,
      {.command = showSettings, .title = L("Settings…", "설정…")},
      {.command = checkForUpdates, .title = L("Check for Updates…", "업데이트 확인…")},
      {.command = terminate,
       .title = L("Quit Velun", "Velun 종료"),
       .key = QKeySequence(Qt::CTRL | Qt::Key_Q)},
  };
}

}  // namespace velun
