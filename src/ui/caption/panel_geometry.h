// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <memory>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QVariantAnimation>

namespace velun {

class AppSettings;
class CaptionPanel;
class CaptionView;
class DesktopPlatform;
class PreferenceStore;

/// Where the caption panel is and how large: keeps it on the screens and stores its frame for each
/// arrangement of them, grows it upwards by its header, and makes it as high as its lines where
/// the settings ask for a number of lines. Lengths are in points. Main thread.
class PanelGeometry final : public QObject {
  Q_OBJECT

 public:
  /// Moves the panel to its stored frame or the default position. The frame is stored in `frames`,
  /// under "CaptionPanel". `view` is the panel's content. All must outlive this object.
  PanelGeometry(CaptionPanel& panel, CaptionView& view, const AppSettings& settings,
                const DesktopPlatform& desktop, PreferenceStore& frames, Clock& clock,
                QObject* parent);
  ~PanelGeometry() override;

  /// Shows or hides the header. The panel's bottom edge stays in place.
  void setHeader(bool visible, bool animated);
  bool headerShown() const { return headerShown_; }
  /// Whether a shown header would be over the point, instead of above the panel.
  bool headerWouldCover(const QPoint& point) const;

  /// Moves the panel to its default frame on its screen.
  void moveToDefaultPlace();
  /// Moves the panel to the next of nine places on its screen.
  void moveToNextPlace();
  void moveToNextScreen();
  /// Moves a panel that is on no screen onto one.
  void returnToScreen();

  /// Stores the frame without the header now; a change is otherwise stored after half a second.
  void store();

 private:
  void connectToPanel();
  void connectToScreens();
  /// Adjusts the height of the panel's content to the panel, unless the header is being animated.
  void updateContentHeight();
  /// Makes the panel as high as its lines, or as before when it had none. Its bottom stays.
  void applyLines();
  /// Without the header.
  int minimumHeight() const;
  bool hasLines() const;
  void limitHeight();
  /// The parts of the screens that no dock covers.
  QList<QRect> areas() const;
  void followScreens();
  /// Moves the panel to its frame again if the window manager has moved it meanwhile.
  void settle(const QRect& wanted);
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
  void moveTo(const QRect& frame, int milliseconds);
  void finishMotion();
  void storeLater();

  CaptionPanel& panel_;
  CaptionView& view_;
  const AppSettings& settings_;
  const DesktopPlatform& desktop_;
  PreferenceStore& frames_;
  Clock& clock_;
  bool headerShown_ = false;
  bool animatingHeader_ = false;
  // The height added to the panel for its header, in points.
  int headerGrowth_ = 0;
  // Of the panel without header and with any height, kept while it is made for lines.
  int freeHeight_ = 0;
  bool isSizedByLines_ = false;
  QVariantAnimation motion_{this};
  bool animatingFrame_ = false;
  std::unique_ptr<ScheduledCall> storing_;
  // Without header and with any height: where it was put first or last.
  QRect resting_;
  // While the screens have just changed; nothing is stored.
  std::unique_ptr<ScheduledCall> settling_;
  QList<QRect> screens_;
};

}  // namespace velun
