// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/own_windows.h"

#include <memory>
#include <QMenu>
#include <QObject>

namespace velun {

class AppCommands;
class BetterCaptions;
class CaptionPanel;
class CaptionView;
class CaptionViewModel;
class Clock;
class DesktopPlatform;
class AudioPlatform;
class PanelGeometry;
class PreferenceStore;
class SmallerRecognizer;
class TranslationPlatform;

/// The services that the panel uses. All must outlive the controller.
struct CaptionWindowServices {
  DesktopPlatform& desktop;
  TranslationPlatform& translation;
  /// Stores the panel's frame, under "CaptionPanel".
  PreferenceStore& frames;
  Clock& clock;
  /// Offers a download before the first words; may be null.
  BetterCaptions* betterCaptions = nullptr;
  /// Offered while the machine is too slow; may be null.
  SmallerRecognizer* smallerRecognizer = nullptr;
  /// Lists the programs that play; null where they cannot be chosen.
  AudioPlatform* audio = nullptr;
};

/// Owns the caption panel and controls its visibility, its level among the windows and its look.
/// Its position and size are those of PanelGeometry. One per run of the program. Main thread.
class CaptionWindowController final : public QObject {
  Q_OBJECT

 public:
  /// Creates the panel, hidden, at its stored frame or the default position. `model` and
  /// `commands` must outlive the controller.
  CaptionWindowController(CaptionViewModel& model, AppCommands& commands,
                          const CaptionWindowServices& services);
  ~CaptionWindowController() override;

  CaptionPanel& panel() const;

  /// Whether the user has shown the panel. It may still be hidden: see isSuppressed().
  bool isShown() const { return isShown_; }
  /// Whether the shown panel is hidden because a screen cast is running.
  bool isSuppressed() const;

  /// Makes an empty menu in the look of the panel.
  std::unique_ptr<QMenu> makeMenu() const;

  /// Keeps an ordinary window of the program readable: it is placed beside the panel, or the panel
  /// is not kept on top while the window is in front. The window may be destroyed at any
  /// time.
  void keepReadable(QWidget& window) { ownWindows_->add(window); }

  /// Shows the panel in front of the other windows, without activating it.
  void show();
  void hide();
  /// Shows a hidden panel and hides a shown one.
  void toggle();

  /// Shows or hides the header. The panel's bottom edge stays in place.
  void setHeader(bool visible, bool animated);
  bool headerShown() const;
  /// Moves the panel to its default frame and brings it to the front.
  void restorePosition();
  /// Moves the panel to the next of nine places on its screen, and shows it.
  void moveToNextPlace();
  /// Moves the panel to the next screen, and shows it.
  void moveToNextScreen();

  /// Shows a short text over the captions for a moment.
  void notify(const QString& text);

 Q_SIGNALS:
  /// `isShown` or `isSuppressed` changed.
  void visibilityChanged();
  /// The user wants to name a speaker of the session.
  void speakerNaming(const QString& speaker);

 private:
  void connectToPanel();
  void connectToSettings();
  void leavePointerBehind();
  void present();
  void applyPreferences();
  bool keepsOnTop() const;
  void applyLevel();
  void applyLook();
  void applyVisibility();
  void applyClickThrough();
  void orderFront();

  CaptionViewModel& model_;
  CaptionWindowServices services_;
  std::unique_ptr<CaptionPanel> panel_;
  std::unique_ptr<OwnWindows> ownWindows_;
  CaptionView* view_ = nullptr;
  std::unique_ptr<PanelGeometry> geometry_;
  bool isShown_ = false;
  bool wasSuppressed_ = false;
  bool wasKeptOnTop_ = false;
};

}  // namespace velun
