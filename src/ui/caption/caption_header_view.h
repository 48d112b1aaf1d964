// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/language_choice.h"
#include "settings/app_settings.h"
#include "ui/caption/caption_colors.h"

#include <QWidget>
#include <vector>

namespace velun {

class AppCommands;
class AudioPlatform;
class CaptionMenu;
class CaptionViewModel;
class Clock;
class HeaderButton;
class HeaderState;
class LanguagePopup;
class LevelMeter;
class ProgramItems;
class SessionSaveButton;

/// The controls of the current session. Dragging its empty space moves the panel.
class CaptionHeaderView final : public QWidget {
  Q_OBJECT

 public:
  /// `model`, `commands` and `clock` must outlive the view.
  CaptionHeaderView(CaptionViewModel& model, AppCommands& commands, Clock& clock,
                    QWidget* parent = nullptr);

  /// Offers to caption one program, or all but one. `audio` must outlive the view.
  void offerPrograms(AudioPlatform& audio);

  /// Whether menus can have rounded corners.
  void setRoundedMenus(bool rounded);
  void setColors(const CaptionColors& colors);

  HeaderButton& inputSource() const { return *inputSource_; }
  LevelMeter& levelMeter() const { return *levelMeter_; }
  SessionSaveButton& saveButton() const { return *saveButton_; }
  HeaderState& state() const { return *state_; }
  HeaderButton& translation() const { return *translation_; }
  HeaderButton& startStop() const { return *startStop_; }
  HeaderButton& session() const { return *session_; }
  HeaderButton& hideButton() const { return *hideButton_; }
  CaptionMenu& inputSourceMenu() const { return *inputSourceMenu_; }
  CaptionMenu& translationMenu() const { return *translationMenu_; }
  CaptionMenu& sessionMenu() const { return *sessionMenu_; }
  /// The list of languages that the translation menu opens.
  LanguagePopup& languagePopup() const { return *languagePopup_; }

 Q_SIGNALS:
  /// A menu or the list of languages was opened, or the last open one was closed.
  void menuTrackingChanged(bool tracking);
  /// The mouse was pressed on empty space.
  void dragRequested(const QPoint& globalPosition);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void arrange();
  void connectToModel();
  CaptionMenu* makeMenu(HeaderButton& button);
  void fillInputSourceMenu();
  void fillSessionMenu();
  void fillTranslationMenu();
  void openLanguages(const QString& title, std::vector<LanguageChoice> choices,
                     const QString& current, void (AppSettings::*set)(const QString&));
  void present();
  void presentStartStop();
  void presentHide();

  CaptionViewModel& model_;
  AppCommands& commands_;
  CaptionColors colors_;
  HeaderButton* inputSource_;
  /// Null where programs cannot be chosen.
  ProgramItems* programs_ = nullptr;
  LevelMeter* levelMeter_;
  SessionSaveButton* saveButton_;
  HeaderState* state_;
  HeaderButton* translation_;
  HeaderButton* startStop_;
  HeaderButton* session_;
  HeaderButton* hideButton_;
  CaptionMenu* inputSourceMenu_;
  CaptionMenu* translationMenu_;
  CaptionMenu* sessionMenu_;
  LanguagePopup* languagePopup_;
  void (AppSettings::*setLanguage_)(const QString&) = nullptr;
};

}  // namespace velun
