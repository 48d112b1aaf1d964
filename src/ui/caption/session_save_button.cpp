// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/session_save_button.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/common/app_commands.h"

namespace velun {

SessionSaveButton::SessionSaveButton(CaptionViewModel& model, AppCommands& commands,
                                     QWidget* parent)
    : HeaderButton(parent), model_(model) {
  connect(this, &QToolButton::clicked, this, [this, &commands] {
    commands.action(saved() ? AppCommand::showHistory : AppCommand::saveSession).trigger();
  });
  connect(&model, &CaptionViewModel::savedURLChanged, this, &SessionSaveButton::present);
  connect(&model, &CaptionViewModel::saveErrorChanged, this, &SessionSaveButton::present);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &SessionSaveButton::present);
  present();
}

bool SessionSaveButton::saved() const {
  return model_.savedURL() && !model_.saveError();
}

void SessionSaveButton::present() {
  if (saved()) {
    setSymbol(QStringLiteral("checkmark.circle"));
    setLabel(L("View Saved Sessions", "저장 기록 보기"),
             L("Session saved · View saved sessions", "세션 저장됨 · 기록 보기"));
  } else {
    setSymbol(QStringLiteral("square.and.arrow.down"));
    const QString label = L("Save Current Session", "현재 세션 저장");
    setLabel(label, model_.saveError() ? L("Retry Save", "저장 재시도") : label);
  }
}

}  // namespace velun
