// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_header_view.h"

#include "captions/caption_target.h"
#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/caption_menu.h"
#include "ui/caption/copy_transcript_button.h"
#include "ui/caption/header_button.h"
#include "ui/caption/header_state.h"
#include "ui/caption/level_meter.h"
#include "ui/caption/program_items.h"
#include "ui/caption/session_save_button.h"
#include "ui/caption/translation_menu.h"
#include "ui/common/accessible_role.h"
#include "ui/common/app_commands.h"
#include "ui/common/language_popup.h"
#include "ui/common/symbol.h"

#include <functional>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace velun {

namespace {

QString symbolName(InputChoice choice) {
  switch (choice) {
    case InputChoice::computer:
      return QStringLiteral("speaker.wave.2.fill");
    case InputChoice::microphone:
      return QStringLiteral("mic.fill");
    case InputChoice::both:
      return QStringLiteral("mic.and.speaker");
  }
  Q_UNREACHABLE();
}

QPalette popupPalette(const CaptionColors& colors) {
  QPalette palette(colors.menu);
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
    palette.setColor(role, colors.menu);
  }
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
    palette.setColor(role, CaptionAppearance::text);
  }
  palette.setColor(QPalette::Mid, colors.menuEdge);
  palette.setColor(QPalette::PlaceholderText, CaptionAppearance::secondaryText);
  palette.setColor(QPalette::Highlight, colors.menuSelection);
  return palette;
}

}  // namespace

CaptionHeaderView::CaptionHeaderView(CaptionViewModel& model, AppCommands& commands, Clock& clock,
                                     QWidget* parent)
    : QWidget(parent),
      model_(model),
      commands_(commands),
      inputSource_(new HeaderButton(this)),
      levelMeter_(new LevelMeter([&model] { return model.meterBands(); }, this)),
      saveButton_(new SessionSaveButton(model, commands, this)),
      state_(new HeaderState(model, clock, this)),
      translation_(new HeaderButton(this)),
      startStop_(new HeaderButton(this, HeaderButton::Shape::filled)),
      session_(new HeaderButton(this)),
      hideButton_(new HeaderButton(this)),
      languagePopup_(new LanguagePopup(this)) {
  translation_->setSymbol(QStringLiteral("translate"));
  session_->setSymbol(QStringLiteral("ellipsis.circle"));
  hideButton_->setSymbol(QStringLiteral("xmark"));
  inputSourceMenu_ = makeMenu(*inputSource_);
  translationMenu_ = makeMenu(*translation_);
  sessionMenu_ = makeMenu(*session_);
  inputSourceMenu_->setMargin(CaptionMenu::Margin::symbols);
  sessionMenu_->setMargin(CaptionMenu::Margin::none);
  connect(inputSourceMenu_, &QMenu::aboutToShow, this, &CaptionHeaderView::fillInputSourceMenu);
  connect(translationMenu_, &QMenu::aboutToShow, this, &CaptionHeaderView::fillTranslationMenu);
  connect(sessionMenu_, &QMenu::aboutToShow, this, &CaptionHeaderView::fillSessionMenu);
  connect(startStop_, &QToolButton::clicked, &commands.action(AppCommand::toggleCaptions),
          &QAction::trigger);
  connect(hideButton_, &QToolButton::clicked, &commands.action(AppCommand::togglePanel),
          &QAction::trigger);
  setOpensPopup(*translation_, *languagePopup_);
  connect(languagePopup_, &LanguagePopup::opened, this,
          [this] { Q_EMIT menuTrackingChanged(true); });
  connect(languagePopup_, &LanguagePopup::closed, this,
          [this] { Q_EMIT menuTrackingChanged(false); });
  connect(languagePopup_, &LanguagePopup::chosen, this, [this](const QString& identifier) {
    if (setLanguage_) std::invoke(setLanguage_, model_.settings(), identifier);
  });
  arrange();
  connectToModel();
  present();
}

void CaptionHeaderView::offerPrograms(AudioPlatform& audio) {
  programs_ = new ProgramItems(model_.settings(), audio, this);
  // A program that begins or ends while the menu is open.
  connect(programs_, &ProgramItems::changed, this, [this] {
    if (inputSourceMenu_->isVisible()) fillInputSourceMenu();
  });
}

void CaptionHeaderView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // From here on, so that the menu has its items when it opens.
  if (programs_) programs_->setFollowing(true);
}

void CaptionHeaderView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (programs_) programs_->setFollowing(false);
}

void CaptionHeaderView::arrange() {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(10, 0, 8, 0);
  row->setSpacing(4);
  row->addWidget(inputSource_);
  row->addSpacing(4);
  row->addWidget(levelMeter_);
  row->addSpacing(4);
  row->addWidget(saveButton_);
  row->addStretch(1);
  row->addWidget(state_);
  row->addWidget(translation_);
  row->addWidget(startStop_);
  row->addWidget(session_);
  row->addWidget(hideButton_);
  setTabOrder(inputSource_, saveButton_);
  setTabOrder(saveButton_, &state_->copyButton());
  setTabOrder(&state_->copyButton(), translation_);
  setTabOrder(translation_, startStop_);
  setTabOrder(startStop_, session_);
  setTabOrder(session_, hideButton_);
}

void CaptionHeaderView::connectToModel() {
  const AppSettings& settings = model_.settings();
  connect(&model_, &CaptionViewModel::isRunningChanged, this, &CaptionHeaderView::present);
  connect(&commands_, &AppCommands::refreshed, this, &CaptionHeaderView::presentStartStop);
  connect(&commands_, &AppCommands::refreshed, this, &CaptionHeaderView::presentHide);
  connect(&settings, &AppSettings::inputChoiceChanged, this, &CaptionHeaderView::present);
  connect(&settings, &AppSettings::programChanged, this, &CaptionHeaderView::present);
  connect(&settings, &AppSettings::translateChanged, this, &CaptionHeaderView::present);
  connect(&settings, &AppSettings::targetIDChanged, this, &CaptionHeaderView::present);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &CaptionHeaderView::present);
}

CaptionMenu* CaptionHeaderView::makeMenu(HeaderButton& button) {
  auto* menu = new CaptionMenu(&button);
  setOpensMenu(button);
  button.setMenu(menu);
  // Only for buttons with a menu: assistive technology cannot press others in this mode.
  button.setPopupMode(QToolButton::InstantPopup);
  connect(menu, &QMenu::aboutToShow, this, [this] { Q_EMIT menuTrackingChanged(true); });
  connect(menu, &QMenu::aboutToHide, this, [this] { Q_EMIT menuTrackingChanged(false); });
  return menu;
}

void CaptionHeaderView::setRoundedMenus(bool rounded) {
  for (CaptionMenu* menu : {inputSourceMenu_, translationMenu_, sessionMenu_}) {
    menu->setRounded(rounded);
  }
}

void CaptionHeaderView::setColors(const CaptionColors& colors) {
  colors_ = colors;
  for (PanelButton* button : findChildren<PanelButton*>()) button->setEdge(colors.buttonEdge);
  for (CaptionMenu* menu : {inputSourceMenu_, translationMenu_, sessionMenu_}) {
    menu->setColors(colors);
  }
  languagePopup_->setPalette(popupPalette(colors));
  update();
}

void CaptionHeaderView::fillInputSourceMenu() {
  inputSourceMenu_->clear();
  for (const InputChoice choice : allInputChoices) {
    addItem(*inputSourceMenu_, commands_.action(selectCommand(choice)))
        ->setIcon(symbolIcon(symbolName(choice), CaptionAppearance::symbol));
  }
  if (!programs_) return;
  programs_->addTo(*inputSourceMenu_, commands_.action(AppCommand::selectComputer).isEnabled());
}

void CaptionHeaderView::fillSessionMenu() {
  using enum AppCommand;
  sessionMenu_->clear();
  for (const AppCommand command :
       {saveSession, showHistory, exportCurrentSession, newSession, showSettings}) {
    addItem(*sessionMenu_, commands_.action(command));
  }
  if (commands_.windows().hasStatusIcons) return;
  sessionMenu_->addSeparator();
  for (const AppCommand command :
       {toggleClickThrough, restorePosition, checkForUpdates, terminate}) {
    addItem(*sessionMenu_, commands_.action(command));
  }
}

void CaptionHeaderView::fillTranslationMenu() {
  const AppSettings& settings = model_.settings();
  velun::fillTranslationMenu(
      *translationMenu_, model_,
      {.openInput =
           [this, &settings] {
             openLanguages(L("Input Language", "입력 언어"), model_.localeChoices(),
                           settings.localeID(), &AppSettings::setLocaleID);
           },
       .openTranslation =
           [this, &settings] {
             openLanguages(L("Translation Language", "번역 언어"), model_.languageChoices(),
                           settings.targetID(), &AppSettings::setTargetID);
           }});
}

void CaptionHeaderView::openLanguages(const QString& title, std::vector<LanguageChoice> choices,
                                      const QString& current,
                                      void (AppSettings::*set)(const QString&)) {
  setLanguage_ = set;
  const QRect button(translation_->mapToGlobal(QPoint(0, 0)), translation_->size());
  languagePopup_->open(title, std::move(choices), current, button);
}

void CaptionHeaderView::present() {
  const AppSettings& settings = model_.settings();
  inputSource_->setSymbol(symbolName(settings.inputChoice()));
  inputSource_->setLabel(L("Input Source", "입력 소스"));
  inputSource_->setAccessibleDescription(captionSourceTitle(settings));

  const QString target = languageName(settings.targetID());
  const QString on = L("Translation on · " + target, "번역 켜짐 · " + target);
  const QString help = L("Translation Settings", "번역 설정");
  translation_->setCaption(settings.translate() ? on : QString());
  translation_->setLabel(settings.translate() ? on : help, help);

  presentStartStop();
  session_->setLabel(L("Session & Settings", "세션 및 설정"));
  presentHide();
  levelMeter_->setRunning(model_.isRunning());
}

void CaptionHeaderView::presentStartStop() {
  const QAction& command = commands_.action(AppCommand::toggleCaptions);
  startStop_->setSymbol(model_.isRunning() ? QStringLiteral("pause.fill")
                                           : QStringLiteral("play.fill"));
  startStop_->setLabel(command.text());
  startStop_->setEnabled(command.isEnabled());
}

void CaptionHeaderView::presentHide() {
  const bool hasIcon = commands_.windows().hasStatusIcons;
  hideButton_->setLabel(L("Hide", "숨기기"),
                        hasIcon ? L("You can reopen the caption window from the status icon",
                                    "상태 아이콘에서 자막 창을 다시 열 수 있습니다")
                                : L("You can reopen the caption window by starting Velun again",
                                    "Velun을 다시 실행하면 자막 창을 다시 열 수 있습니다"));
}

void CaptionHeaderView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(QRect(0, height() - 1, width(), 1), colors_.hairline);
}

void CaptionHeaderView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    Q_EMIT dragRequested(event->globalPosition().toPoint());
  } else {
    QWidget::mousePressEvent(event);
  }
}

void CaptionHeaderView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      focusNextPrevChild(layoutDirection() == Qt::RightToLeft);
      break;
    case Qt::Key_Right:
      focusNextPrevChild(layoutDirection() != Qt::RightToLeft);
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace velun
