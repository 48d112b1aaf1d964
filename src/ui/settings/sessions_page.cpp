// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/sessions_page.h"

#include "language/localization.h"
#include "settings/library_settings.h"
#include "ui/common/symbol.h"
#include "ui/settings/settings_form.h"
#include "ui/settings/sharing_section.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace velun {

SessionsPage::SessionsPage(AppSettings& settings, std::function<void()> openRecordsFolder,
                           const DesktopSettings& desktop, QWidget* parent)
    : SettingsPage(parent), settings_(settings), library_(desktop.library) {
  heading_ = addHeading(&form());
  autoSave_ = addToggle(&form());
  autoSaveNote_ = addNote(&form());
  ask_ = addToggle(&form());
  askNote_ = addNote(&form());
  titles_ = addToggle(&form());
  titles_->setVisible(library_ != nullptr);
  openFolder_ = new QPushButton;
  openFolder_->setIcon(symbolIcon(QStringLiteral("folder")));
  openFolder_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  form().addSpacing(6);
  form().addWidget(openFolder_);
  if (desktop.sharing) {
    form().addSpacing(10);
    form().addWidget(new SharingSection(*desktop.sharing, desktop.captionFile, systemFilePanels()));
  }
  connect(autoSave_, &QCheckBox::toggled, &settings_, &AppSettings::setAutoSaveSessions);
  connect(ask_, &QCheckBox::toggled, &settings_, &AppSettings::setAskBeforeDiscarding);
  if (library_) {
    connect(titles_, &QCheckBox::toggled, library_, &LibrarySettings::setTitlesFromFirstSentence);
    connect(library_, &LibrarySettings::titlesFromFirstSentenceChanged, this,
            &SessionsPage::presentToggles);
  }
  connect(openFolder_, &QPushButton::clicked, this, std::move(openRecordsFolder));
  connect(&settings_, &AppSettings::autoSaveSessionsChanged, this, &SessionsPage::presentToggles);
  connect(&settings_, &AppSettings::askBeforeDiscardingChanged, this,
          &SessionsPage::presentToggles);
  connect(&Localization::shared(), &Localization::languageChanged, this, &SessionsPage::present);
  present();
}

QString SessionsPage::title() {
  return L("Sessions", "세션");
}

void SessionsPage::present() {
  heading_->setText(L("Saving Sessions", "세션 저장"));
  labelToggle(autoSave_, L("Save new sessions automatically", "새 세션을 자동으로 저장"));
  explainToggle(
      autoSave_, autoSaveNote_,
      L("Sessions are saved only when you click Save Session; later captions are then saved too. "
        "Auto-save applies from the next new session.",
        "기본은 직접 저장입니다. ‘세션 저장’을 누르면 현재 세션의 이후 자막과 번역도 함께 "
        "저장합니다. "
        "자동 저장 설정은 다음 새 세션부터 적용됩니다."));
  labelToggle(ask_, L("Ask to save before a new session or quitting",
                      "새 세션·앱 종료 전에 저장 여부 묻기"));
  explainToggle(
      ask_, askNote_,
      L("Unsaved captions are kept in memory only and are lost when the app quits. Audio is never "
        "saved.",
        "저장하지 않은 자막은 메모리에만 보관되며 앱이 종료되면 사라집니다. 오디오 파일은 저장하지 "
        "않습니다."));
  labelToggle(titles_,
              L("Name sessions after their first sentence", "첫 문장을 세션 제목으로 쓰기"));
  openFolder_->setText(L("Open Sessions Folder", "기록 폴더 열기"));
  openFolder_->setToolTip(openFolder_->text());
  presentToggles();
  updateGeometry();
}

void SessionsPage::presentToggles() {
  checkToggle(autoSave_, settings_.autoSaveSessions());
  checkToggle(ask_, settings_.askBeforeDiscarding());
  checkToggle(titles_, library_ && library_->titlesFromFirstSentence());
}

}  // namespace velun
