// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "ui/caption/own_windows.h"

#include <memory>
#include <QMenu>
#include <QObject>
#include <QVariantAnimation>

namespace velun {

class AppCommands;
class BetterCaptions;
class CaptionPanel;
class CaptionView;
class CaptionViewModel;
class DesktopPlatform;
class AudioPlatform;
class PreferenceStore;
class SmallerRecognizer;
class TranslationPlatform;

/// The services that the caption window uses. All must outlive the controller.
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

/// Owns the caption panel and controls its position, its size with and without the header, and its
/// visibility. One per run of the program. Main thread.
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
  bool headerShown() const { return headerShown_; }
  /// Adjusts the height of the panel's content to the panel, unless the header is being animated.
  void updateContentHeight();
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

 private:
  void connectToPanel();
  void connectToScreens();
  void connectToSettings();
  void present();
  void applyPreferences();
  bool keepsOnTop() const;
  void applyLevel();
  void applyLook();
  void applyVisibility();
  void applyClickThrough();
  /// Makes the panel as high as its lines, or as before when it had none. Its bottom stays.
  void applyLines();
  /// Without the header.
  int minimumHeight() const;
  bool hasLines() const;
  void limitHeight();
  void orderFront();
  /// The parts of the screens that no dock covers.
  QList<QRect> areas() const;
  void followScreens();
  /// The panel's frame, or its target frame while it is being animated.
  QRect settledFrame() const;
  /// The same without the header.
  QRect frameWithoutHeader() const;
  /// Moves the panel to a frame without the header, to which a visible header is added.
  void place(QRect frame, int milliseconds);
  /// Moves a panel that the user has dropped near an edge onto it.
  void snap();
  void growForHeader(QRect& frame);
  /// How far the header grows beyond a frame, in points.
  int headerGrowthOver(const QRect& frame) const;
  /// Whether the header would be over the point, instead of above the panel.
  bool wouldCover(const QPoint& point) const;
  void moveTo(const QRect& frame, int milliseconds);
  void finishMotion();
  void storeFrameLater();
  void storeFrame();

  CaptionViewModel& model_;
  CaptionWindowServices services_;
  std::unique_ptr<CaptionPanel> panel_;
  std::unique_ptr<OwnWindows> ownWindows_;
  CaptionView* view_ = nullptr;
  bool headerShown_ = false;
  bool animatingHeader_ = false;
  // The height added to the panel for its header, in points.
  int headerGrowth_ = 0;
  // Of the panel without header and with any height, kept while it is made for lines.
  int freeHeight_ = 0;
  bool isSizedByLines_ = false;
  QVariantAnimation motion_{this};
  bool animatingFrame_ = false;
  bool isShown_ = false;
  bool wasSuppressed_ = false;
  bool wasKeptOnTop_ = false;
  std::unique_ptr<ScheduledCall> storing_;
  QList<QRect> screens_;
};

}  // namespace velun
