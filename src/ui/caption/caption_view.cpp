// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_view.h"

#include "captions/better_captions.h"
#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/caption/caption_empty_state.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/caption_menu.h"
#include "ui/caption/caption_notice.h"
#include "ui/caption/caption_status_line.h"
#include "ui/caption/failure_buttons.h"
#include "ui/caption/header_state.h"
#include "ui/caption/input_labels.h"
#include "ui/caption/jump_button.h"
#include "ui/caption/panel_surface.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/smaller_recognizer_button.h"
#include "ui/caption/speaker_labels.h"
#include "ui/caption/text_size_gestures.h"
#include "ui/caption/text_size_notice.h"
#include "ui/caption/transcript_formats.h"
#include "ui/caption/transcript_view.h"
#include "ui/common/app_commands.h"
#include "ui/common/find_bar.h"

#include <algorithm>
#include <initializer_list>
#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <utility>

namespace velun {

namespace {

constexpr int kJumpGap = 12;
constexpr int kControlSurfaceAlpha = 236;

/// A change that includes both.
TranscriptChange merged(const TranscriptChange& a, const TranscriptChange& b) {
  using Lines = TranscriptChange::Lines;
  if (a.lines == Lines::added) return b;
  if (b.lines == Lines::added) return a;
  const bool same = a.lines != Lines::all && a == b;
  return same ? a : TranscriptChange();
}

}  // namespace

CaptionView::CaptionView(CaptionViewModel& model, AppCommands& commands,
                         TranslationPlatform& translation, Clock& clock, CaptionChrome::Panel panel,
                         BetterCaptions* better, SmallerRecognizer* smaller)
    : model_(model),
      better_(better),
      chrome_(clock, std::move(panel)),
      header_(new CaptionHeaderView(model, commands, clock, this)),
      // In the order of the Tab key.
      emptyState_(new CaptionEmptyState(model, commands, better, this)),
      transcript_(new TranscriptView(this)),
      statusLine_(new CaptionStatusLine(model, translation, this)),
      smaller_(new SmallerRecognizerButton(smaller, this)),
      failureButtons_(new FailureButtons(model, commands, this)),
      jumpButton_(new JumpButton(this)),
      notice_(new CaptionNotice(CaptionNotice::Kind::message, clock, this)),
      sizeNotice_(new TextSizeNotice(model.settings(), clock, *transcript_)) {
  header_->hide();
  emptyState_->setFocusProxy(transcript_);
  for (QWidget* each : std::initializer_list<QWidget*>{transcript_, emptyState_}) {
    each->installEventFilter(this);
  }
  emptyState_->stackUnder(statusLine_);
  auto* gestures = new TextSizeGestures(model.settings(), this);
  gestures->watch(*transcript_->textView().viewport());
  gestures->watch(*emptyState_);
  connect(header_, &CaptionHeaderView::menuTrackingChanged, this,
          [this](bool tracking) { chrome_.setMenuTracking(tracking); });
  connect(transcript_, &TranscriptView::atBottomChanged, this, &CaptionView::updateJumpButton);
  connect(transcript_, &TranscriptView::isHeldChanged, this, &CaptionView::updateJumpButton);
  connect(jumpButton_, &QAbstractButton::clicked, this, &CaptionView::jump);
  const auto rearrange = [this] {
    arrange();
    Q_EMIT linesHeightChanged();
  };
  connect(statusLine_, &CaptionStatusLine::textChanged, this, rearrange);
  connect(smaller_, &SmallerRecognizerButton::offerChanged, this, rearrange);
  connect(smaller_, &SmallerRecognizerButton::modelsRequested,
          &commands.action(AppCommand::showModels), &QAction::trigger);
  connect(failureButtons_, &FailureButtons::changed, this, rearrange);
  connect(emptyState_, &CaptionEmptyState::changed, this, rearrange);
  // The header gets the focus by focusNextPrevChild(), on return from one of its menus or another
  // window, and from screen readers, which also focus invisible buttons. A window that is being
  // hidden moves the focus around.
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    chrome_.setKeyboardInHeader(isVisible() && header_->isAncestorOf(now));
  });
  connect(transcript_, &TranscriptView::labelClicked, this, &CaptionView::nameSpeakerOf);
  connect(&transcript_->textView(), &SelectableTranscriptTextView::menuOpening, this,
          &CaptionView::addSpeakerAction);
  connectToModel();
  updateTranscript();
  transcript_->textView().setMenuMaker([this] {
    std::unique_ptr<CaptionMenu> menu = makeMenu();
    menu->setMargin(CaptionMenu::Margin::none);
    return menu;
  });
}

CaptionView::~CaptionView() {
  // The children are destroyed after this object's members; ignore their signals.
  disconnect(qApp, nullptr, this, nullptr);
}

void CaptionView::connectToModel() {
  using Lines = TranscriptChange::Lines;
  const TranscriptChange added{.lines = Lines::added};
  const auto follow = [this, added](auto& object, auto signal) {
    connect(&object, signal, this, [this, added] { updateLater(added); });
  };
  follow(model_, &CaptionViewModel::sessionChanged);
  follow(model_, &CaptionViewModel::volatileTextChanged);
  follow(model_, &CaptionViewModel::translationStatusChanged);
  follow(model_, &CaptionViewModel::isRunningChanged);
  follow(model_.settings(), &AppSettings::fontSizeChanged);
  follow(model_.settings(), &AppSettings::captionLinesChanged);
  follow(model_.settings(), &AppSettings::translateChanged);
  follow(model_.settings(), &AppSettings::showTranslationOnlyChanged);
  follow(model_.settings(), &AppSettings::localeIDChanged);
  follow(model_.settings(), &AppSettings::targetIDChanged);
  follow(Localization::shared(), &Localization::languageChanged);
  const auto updateLine = [this](int index) {
    updateLater({.lines = Lines::one, .index = index});
  };
  connect(&model_, &CaptionViewModel::lineInserted, this,
          [this](int index) { updateLater({.lines = Lines::from, .index = index}); });
  const auto updateAll = [this] {
    updateLater({});
  };
  connect(&model_, &CaptionViewModel::inputNamesChanged, this, updateAll);
  connect(&model_.settings(), &AppSettings::inputLabelsChanged, this, updateAll);
  connect(&model_, &CaptionViewModel::translationChanged, this, updateLine);
  connect(&model_, &CaptionViewModel::lineCorrected, this, updateLine);
  connect(&model_, &CaptionViewModel::speakersChanged, this,
          [this] { updateLater({.lines = Lines::all}); });
}

void CaptionView::updateLater(const TranscriptChange& change) {
  if (due_) {
    due_ = merged(*due_, change);
    return;
  }
  due_ = change;
  QMetaObject::invokeMethod(this, &CaptionView::updateTranscript, Qt::QueuedConnection);
}

void CaptionView::updateTranscript() {
  const TranscriptChange change = due_.value_or(TranscriptChange());
  due_.reset();
  TranscriptInputs inputs;
  inputs.session = &model_.session();
  for (const CaptionViewModel::Draft& draft : model_.drafts()) {
    inputs.drafts.push_back(
        {draft.text, inputLabel(model_.session(), model_.settings(), style_, draft.input)});
  }
  const SpeakerLabels speakers(model_.lines(), style_.background.lightness() < 128);
  const LineLabeller ofInput = inputLabels(model_.session(), model_.settings(), style_);
  inputs.labelOf = [speakers, ofInput](const Line& line) {
    const LineLabel speaker = speakers.labelOf(line);
    return ofInput ? joined(ofInput(line), speaker) : speaker;
  };
  inputs.fontSize = model_.settings().fontSize();
  inputs.content = model_.captionContent();
  inputs.language = model_.settings().targetID();
  inputs.followsLatest = true;
  inputs.captionStyle = true;
  inputs.style = style_;
  inputs.wholeLines = model_.settings().captionLines() > 0;
  inputs.pendingTranslationIDs = model_.pendingTranslationIDs();
  inputs.showsPendingInput =
      inputs.content == TranscriptContent::translation && !model_.volatileText().isEmpty();
  inputs.jumpToLatest = jumpToLatest_;
  transcript_->update(inputs, change);
  updateEmptyState();
  Q_EMIT linesHeightChanged();
}

void CaptionView::updateEmptyState() {
  const bool isEmpty = model_.lines().empty() && model_.volatileText().isEmpty();
  if (!isEmpty && emptyState_->isAncestorOf(QApplication::focusWidget())) transcript_->setFocus();
  emptyState_->setVisible(isEmpty);
  // The words are the proof that the download is used.
  if (!isEmpty && better_) better_->acknowledge();
}

int CaptionView::linesHeight() const {
  const int status = statusHeights().total();
  const int text = transcript_->heightForLines(std::max(model_.settings().captionLines(), 1));
  const int empty = emptyState_->isVisibleTo(this) ? emptyState_->sizeHint().height() : 0;
  if (statusReplacesEmptyState()) return std::max({text, empty, status});
  return std::max(text, empty) + status;
}

void CaptionView::nameSpeakerOf(std::size_t line) {
  if (line >= model_.lines().size()) return;
  const std::optional<QString> speaker = model_.lines()[line].speaker;
  if (speaker) Q_EMIT speakerNaming(*speaker);
}

void CaptionView::addSpeakerAction(QMenu& menu, const QPoint& position) {
  const auto line = transcript_->lineAt(position);
  if (!line || *line >= model_.lines().size() || !model_.lines()[*line].speaker) return;
  menu.addSeparator();
  menu.addAction(L("Name Speaker…", "화자 이름 지정…"), this,
                 [this, line = *line] { nameSpeakerOf(line); });
}

void CaptionView::jump() {
  transcript_->clearSelection();
  ++jumpToLatest_;
  updateLater({.lines = TranscriptChange::Lines::added});
}

void CaptionView::updateJumpButton() {
  jumpButton_->setWanted(!transcript_->atBottom() || transcript_->isHeld());
}

void CaptionView::setHovering(bool hovering) {
  chrome_.setHovering(hovering);
}

void CaptionView::leaveHeader() {
  if (header_->isAncestorOf(window()->focusWidget())) transcript_->setFocus();
}

void CaptionView::setHeaderInSight(bool inSight) {
  if (!inSight) leaveHeader();
  header_->setVisible(inSight);
}

void CaptionView::setClickThrough(bool isThrough) {
  const bool wasThrough = std::exchange(isClickThrough_, isThrough);
  chrome_.setLocked(isThrough);
  if (isThrough) {
    notice_->showText(L("Clicks go through the captions. Start Velun once more to end this.",
                        "클릭이 자막 창을 통과합니다. Velun을 한 번 더 실행하면 해제됩니다."));
  } else if (wasThrough) {
    notice_->showText(
        L("The captions can be clicked again.", "자막 창을 다시 클릭할 수 있습니다."));
  }
}

void CaptionView::setCapabilities(const DesktopCapabilities& capabilities) {
  roundedMenus_ = capabilities.compositing;
  header_->setRoundedMenus(roundedMenus_);
  header_->state().setCapabilities(capabilities);
}

std::unique_ptr<CaptionMenu> CaptionView::makeMenu() {
  auto menu = std::make_unique<CaptionMenu>(this);
  menu->setRounded(roundedMenus_);
  menu->setColors(colors_);
  return menu;
}

void CaptionView::setLook(const PanelStyle& style, const CaptionColors& colors) {
  colors_ = colors;
  // Any: the colours of names follow the background.
  if (std::exchange(style_, style) != style) updateLater({});
  header_->setColors(colors);
  emptyState_->setColors(colors);
  failureButtons_->setColors(colors);
  jumpButton_->setColors(colors);
  notice_->setColors(colors);
  smaller_->setColors(colors);
  sizeNotice_->setColors(colors);
  update();
}

void CaptionView::paintEvent(QPaintEvent*) {
  if (!needsControlSurface(style_)) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor surface = colors_.panel;
  surface.setAlpha(kControlSurfaceAlpha);
  painter.setPen(colors_.edge);
  painter.setBrush(surface);
  const QWidget* find = transcript_->findBar();
  for (const QWidget* part : std::initializer_list<const QWidget*>{
           header_, emptyState_, smaller_, statusLine_, failureButtons_, find}) {
    if (!part || !part->isVisible()) continue;
    const QPoint at = part->mapTo(this, QPoint());
    painter.drawRoundedRect(QRectF(QRect(at, part->size())).adjusted(0.5, 0.5, -0.5, -0.5),
                            style_.corner, style_.corner);
  }
}

void CaptionView::arrange() {
  const int top = CaptionAppearance::headerHeight;
  // The height that the status takes from the transcript.
  const int status = statusReplacesEmptyState() ? 0 : statusHeights().total();
  header_->setGeometry(0, 0, width(), top);
  transcript_->setGeometry(0, top, width(), std::max(height() - top - status, 0));
  const QRect text = transcript_->geometry();
  emptyState_->setGeometry(text);
  notice_->place(text);
  arrangeStatus();
  jumpButton_->move(text.center().x() - JumpButton::side / 2,
                    text.bottom() + 1 - kJumpGap - JumpButton::side);
}

bool CaptionView::statusReplacesEmptyState() const {
  return emptyState_->isVisibleTo(this) && emptyState_->givesWay();
}

CaptionView::StatusHeights CaptionView::statusHeights() const {
  StatusHeights heights;
  heights.smaller = smaller_->neededHeight();
  heights.line = statusLine_->neededHeight(width());
  if (failureButtons_->isWanted()) heights.buttons = failureButtons_->sizeHint().height();
  return heights;
}

void CaptionView::arrangeStatus() {
  const bool isInMiddle = statusReplacesEmptyState();
  const StatusHeights heights = statusHeights();
  const int room = height() - CaptionAppearance::headerHeight;
  const int space = room - heights.total();
  int y = CaptionAppearance::headerHeight + (isInMiddle ? std::max(0, space / 2) : space);
  statusLine_->setAlignment(isInMiddle ? Qt::AlignHCenter | Qt::AlignTop
                                       : Qt::AlignLeft | Qt::AlignTop);
  failureButtons_->setCentered(isInMiddle);
  statusLine_->setVisible(heights.line > 0);
  const auto place = [&](QWidget* view, int viewHeight) {
    view->setGeometry(0, y, width(), viewHeight);
    y += viewHeight;
  };
  place(smaller_, heights.smaller);
  place(statusLine_, heights.line);
  place(failureButtons_, heights.buttons);
}

void CaptionView::resizeEvent(QResizeEvent*) {
  arrange();
}

bool CaptionView::eventFilter(QObject* watched, QEvent* event) {
  // The search bar has opened or closed, or the empty state has other controls.
  if (event->type() == QEvent::LayoutRequest) Q_EMIT linesHeightChanged();
  return QWidget::eventFilter(watched, event);
}

/// Not by a focus proxy: the Tab key would go from the last control to the proxy and never to the
/// header, which comes before it.
void CaptionView::focusInEvent(QFocusEvent* event) {
  transcript_->setFocus(event->reason());
}

bool CaptionView::focusNextPrevChild(bool next) {
  // The header must be visible before it can take the focus.
  if (!header_->isVisible()) chrome_.setKeyboardInHeader(true);
  const bool moved = QWidget::focusNextPrevChild(next);
  chrome_.setKeyboardInHeader(header_->isAncestorOf(QApplication::focusWidget()));
  return moved;
}

void CaptionView::keyPressEvent(QKeyEvent* event) {
  // Outside of dialogs Qt's buttons react only to the space bar.
  auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (button && isReturn && !event->isAutoRepeat()) {
    button->click();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace velun
