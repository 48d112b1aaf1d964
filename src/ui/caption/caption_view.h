// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_chrome.h"
#include "ui/caption/caption_colors.h"
#include "ui/caption/transcript_inputs.h"

#include <memory>
#include <QWidget>

class QMenu;

namespace velun {

class AppCommands;
class BetterCaptions;
class CaptionEmptyState;
class CaptionHeaderView;
class CaptionMenu;
class CaptionNotice;
class CaptionStatusLine;
class CaptionViewModel;
class FailureButtons;
class Clock;
struct DesktopCapabilities;
class JumpButton;
class SmallerRecognizer;
class SmallerRecognizerButton;
class TextSizeNotice;
class TranscriptView;
class TranslationPlatform;

/// The content of the caption panel: the header, the transcript and the controls over it. Main
/// thread.
class CaptionView final : public QWidget {
  Q_OBJECT

 public:
  /// `better` and `smaller` may be null. All must outlive the view.
  CaptionView(CaptionViewModel& model, AppCommands& commands, TranslationPlatform& translation,
              Clock& clock, CaptionChrome::Panel panel, BetterCaptions* better = nullptr,
              SmallerRecognizer* smaller = nullptr);
  ~CaptionView() override;

  /// The pointer entered or left the panel.
  void setHovering(bool hovering);

  /// Gives the keyboard back to the transcript if a control of the header has it.
  void leaveHeader();

  /// Whether the header is visible. While it is not, it ignores input and cannot be focused.
  void setHeaderInSight(bool inSight);

  /// While the pointer goes through the panel, the header stays hidden.
  void setClickThrough(bool isThrough);

  void setLook(const PanelStyle& style, const CaptionColors& colors);
  /// What the desktop supports now. Rounded menus require a compositor.
  void setCapabilities(const DesktopCapabilities& capabilities);

  /// Makes an empty menu in the look of the panel.
  std::unique_ptr<CaptionMenu> makeMenu();

  /// The height for the chosen number of lines, without the header: of the text, the status and, as
  /// long as it is shown, the empty state. In points.
  int linesHeight() const;

  CaptionHeaderView& header() const { return *header_; }
  TranscriptView& transcript() const { return *transcript_; }
  CaptionEmptyState& emptyState() const { return *emptyState_; }
  JumpButton& jumpButton() const { return *jumpButton_; }
  CaptionNotice& notice() const { return *notice_; }
  FailureButtons& failureButtons() const { return *failureButtons_; }
  TextSizeNotice& sizeNotice() const { return *sizeNotice_; }
  CaptionStatusLine& statusLine() const { return *statusLine_; }
  SmallerRecognizerButton& smallerRecognizer() const { return *smaller_; }
  const CaptionChrome& chrome() const { return chrome_; }

 Q_SIGNALS:
  /// What linesHeight() depends on may have changed.
  void linesHeightChanged();
  /// The user wants to name a speaker (model/speaker.h).
  void speakerNaming(const QString& speaker);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void connectToModel();
  void updateLater(const TranscriptChange& change);
  void updateTranscript();
  void updateEmptyState();
  void updateJumpButton();
  void jump();
  void nameSpeakerOf(std::size_t line);
  void addSpeakerAction(QMenu& menu, const QPoint& position);
  void arrange();
  /// Whether the status is shown in the middle, in place of the empty state's texts.
  bool statusReplacesEmptyState() const;
  /// The heights of the status and its buttons, from top to bottom.
  struct StatusHeights {
    int smaller = 0;
    int line = 0;
    int buttons = 0;

    int total() const { return smaller + line + buttons; }
  };
  StatusHeights statusHeights() const;
  void arrangeStatus();

  CaptionViewModel& model_;
  BetterCaptions* better_;
  CaptionChrome chrome_;
  CaptionHeaderView* header_;
  CaptionEmptyState* emptyState_;
  TranscriptView* transcript_;
  CaptionStatusLine* statusLine_;
  SmallerRecognizerButton* smaller_;
  FailureButtons* failureButtons_;
  JumpButton* jumpButton_;
  CaptionNotice* notice_;
  TextSizeNotice* sizeNotice_;
  // The change to show in the next update; nullopt while none is due.
  std::optional<TranscriptChange> due_;
  PanelStyle style_;
  CaptionColors colors_;
  bool isClickThrough_ = false;
  bool roundedMenus_ = true;
  int jumpToLatest_ = 0;
};

}  // namespace velun
