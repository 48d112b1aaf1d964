// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <memory>
#include <QObject>
#include <QVariantAnimation>

namespace velun {

class AppCommands;
class CaptionPanel;
class CaptionView;
class CaptionViewModel;
class DesktopPlatform;
class PreferenceStore;
class TranslationPlatform;

/// What the caption window stands on; all of it outlives the controller.
struct CaptionWindowServices {
  DesktopPlatform& desktop;
  TranslationPlatform& translation;
  /// Where the panel's frame is kept, under "CaptionPanel".
  PreferenceStore& frames;
  Clock& clock;
};

/// Owns the caption panel: where it stands, how large it is with and without its header, whether it
/// is to be seen. One for the run of the program. Main thread.
class CaptionWindowController final : public QObject {
  Q_OBJECT

 public:
  /// Makes the panel, at its kept frame or the default place, and does not show it. `model` and
  /// `commands` must outlive the controller.
  CaptionWindowController(CaptionViewModel& model, AppCommands& commands,
                          const CaptionWindowServices& services);
  ~CaptionWindowController() override;

  CaptionPanel& panel() const;

  /// Whether the user wants the panel shown. It may still be off the screen: see `isSuppressed`.
  bool isShown() const { return isShown_; }
  /// Whether a panel that is wanted is kept off the screen because a screen cast runs.
  bool isSuppressed() const;

  /// Shows the panel in front of the other windows, without taking the keyboard.
  void show();
  void hide();
  /// Shows a hidden panel and hides a shown one.
  void toggle();

  /// Shows or hides the header: the panel's bottom edge stays where it is.
  void setHeader(bool visible, bool animated);
  bool headerShown() const { return headerShown_; }
  /// Fits the height of the panel's content to the panel, unless the header is being animated.
  void updateContentHeight();
  /// Puts the panel back at its default place and size and brings it to the front.
  void restorePosition();

 Q_SIGNALS:
  /// `isShown` or `isSuppressed` changed.
  void visibilityChanged();

 private:
  void connectToPanel();
  void connectToSettings();
  void present();
  void applyPreferences();
  void applyContrast();
  void applyVisibility();
  void orderFront();
  /// Where the panel stands, or will stand after its movement.
  QRect settledFrame() const;
  void moveTo(const QRect& frame, int milliseconds);
  void finishMotion();
  void keepFrameLater();
  void keepFrame();

  CaptionViewModel& model_;
  CaptionWindowServices services_;
  std::unique_ptr<CaptionPanel> panel_;
  CaptionView* view_ = nullptr;
  bool headerShown_ = false;
  bool animatingHeader_ = false;
  // How much the panel has grown for its header.
  int headerGrowth_ = 0;
  QVariantAnimation motion_;
  bool animatingFrame_ = false;
  bool isShown_ = false;
  bool wasSuppressed_ = false;
  std::unique_ptr<ScheduledCall> keep_;
};

}  // namespace velun
