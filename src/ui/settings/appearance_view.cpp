// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/appearance_view.h"

#include "language/localization.h"
#include "ui/caption/panel_surface.h"
#include "ui/common/notice_label.h"
#include "ui/settings/appearance_choices.h"

#include <algorithm>
#include <QCheckBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr QMargins kFormMargins(22, 12, 22, 18);
constexpr int kSpacing = 7;
constexpr int kSliderWidth = 160;
// The least that WCAG 2 asks of small text.
constexpr double kMinContrast = 4.5;
// Shown for a background whose opacity is left to the desktop.
constexpr double kUsualOpacity = 0.9;

ColorChooser* addColor(QVBoxLayout* form, QLabel** label,
                       ColorChooser::Automatic automatic = ColorChooser::Automatic::no) {
  auto* chooser = new ColorChooser(automatic);
  addChooser(form, chooser, label);
  return chooser;
}

}  // namespace

QString AppearanceView::title() {
  return L("Appearance", "모양");
}

AppearanceView::AppearanceView(AppSettings& settings, QWidget* parent)
    : QWidget(parent),
      settings_(settings),
      preview_(new StylePreview(this)),
      scroll_(new QScrollArea(this)) {
  auto* content = new QWidget;
  auto* form = new QVBoxLayout(content);
  form->setContentsMargins(kFormMargins);
  form->setSpacing(kSpacing);
  addSets(form);
  addText(form);
  addBackground(form);
  addTranslation(form);
  addPanel(form);
  form->addStretch();
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setWidgetResizable(true);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_->setWidget(content);
  // The preview stays in sight above the form.
  auto* top = new QVBoxLayout;
  top->setContentsMargins(kFormMargins.left(), 14, kFormMargins.right(), 0);
  top->addWidget(preview_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(top);
  column->addWidget(scroll_, 1);
  for (const auto signal :
       {&AppSettings::panelStyleChanged, &AppSettings::fontSizeChanged,
        &AppSettings::followsHighContrastChanged, &AppSettings::captionLinesChanged}) {
    connect(&settings_, signal, this, &AppearanceView::presentStyle);
  }
  connect(&Localization::shared(), &Localization::languageChanged, this, &AppearanceView::present);
  present();
}

template <class Change>
void AppearanceView::change(Change change) {
  PanelStyle style = settings_.panelStyle();
  change(style);
  settings_.setPanelStyle(style);
}

void AppearanceView::addSets(QVBoxLayout* form) {
  backdrop_ = addChooser(form, &backdropLabel_);
  set_ = addChooser(form, &setLabel_);
  reset_ = new QPushButton;
  form->addWidget(reset_, 0, Qt::AlignRight);
  contrast_ = new NoticeLabel;
  contrast_->setWordWrap(true);
  form->addWidget(contrast_);
  connect(backdrop_, &QComboBox::activated, this, [this](int index) {
    preview_->setBackdrop(StylePreview::allBackdrops[static_cast<std::size_t>(index)]);
  });
  connect(set_, &QComboBox::activated, this, [this](int index) {
    settings_.setPanelSet(allPanelSets[static_cast<std::size_t>(index)]);
  });
  connect(reset_, &QPushButton::clicked, this,
          [this] { settings_.setPanelStyle(standardStyle(settings_.panelSet())); });
}

void AppearanceView::addText(QVBoxLayout* form) {
  textHeading_ = addHeading(form);
  size_ = addChooser(form, &sizeLabel_);
  family_ = addChooser(form, &familyLabel_);
  weight_ = addChooser(form, &weightLabel_);
  spacing_ = addChooser(form, &spacingLabel_);
  color_ = addColor(form, &colorLabel_);
  edge_ = addChooser(form, &edgeLabel_);
  connect(size_, &QComboBox::activated, this,
          [this](int index) { settings_.setFontSize(size_->itemData(index).toDouble()); });
  connect(family_, &QComboBox::activated, this, [this](int index) {
    change([&](PanelStyle& style) { style.fontFamily = family_->itemData(index).toString(); });
  });
  connect(weight_, &QComboBox::activated, this, [this](int index) {
    change([&](PanelStyle& style) { style.fontWeight = weight_->itemData(index).toInt(); });
  });
  connect(spacing_, &QComboBox::activated, this, [this](int index) {
    change([&](PanelStyle& style) { style.lineSpacing = spacing_->itemData(index).toDouble(); });
  });
  connect(color_, &ColorChooser::chosen, this, [this](const std::optional<QColor>& color) {
    change([&](PanelStyle& style) { style.text = color.value_or(style.text); });
  });
  connect(edge_, &QComboBox::activated, this, [this](int index) {
    change([&](PanelStyle& style) {
      style.edge = static_cast<TextEdge>(edge_->itemData(index).toInt());
    });
  });
}

void AppearanceView::addBackground(QVBoxLayout* form) {
  backgroundHeading_ = addHeading(form);
  background_ = addColor(form, &backgroundLabel_);
  addOpacity(form);
  corner_ = addChooser(form, &cornerLabel_);
  connect(background_, &ColorChooser::chosen, this, [this](const std::optional<QColor>& color) {
    change([&](PanelStyle& style) { style.background = color.value_or(style.background); });
  });
  connect(corner_, &QComboBox::activated, this, [this](int index) {
    change([&](PanelStyle& style) { style.corner = corner_->itemData(index).toInt(); });
  });
}

void AppearanceView::addOpacity(QVBoxLayout* form) {
  opacityLabel_ = new QLabel;
  opacityValue_ = new QLabel;
  opacity_ = new QSlider(Qt::Horizontal);
  opacity_->setRange(0, 100);
  opacity_->setSingleStep(5);
  opacity_->setPageStep(10);
  opacity_->setMinimumWidth(kSliderWidth);
  opacityLabel_->setBuddy(opacity_);
  // Wide enough for every value, so that the slider does not move while it is dragged.
  opacityValue_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("100% ")));
  opacityValue_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  auto* row = new QHBoxLayout;
  row->addWidget(opacityLabel_);
  row->addStretch();
  row->addWidget(opacity_);
  row->addWidget(opacityValue_);
  form->addLayout(row);
  const auto store = [this] {
    change([&](PanelStyle& style) { style.opacity = opacity_->value() / 100.0; });
  };
  // Each change is written to the disk, so a drag only moves the preview until it ends.
  connect(opacity_, &QSlider::valueChanged, this,
          [this, store] { opacity_->isSliderDown() ? previewOpacity() : store(); });
  connect(opacity_, &QSlider::sliderReleased, this, store);
}

void AppearanceView::addTranslation(QVBoxLayout* form) {
  translationHeading_ = addHeading(form);
  translationColor_ = addColor(form, &translationColorLabel_, ColorChooser::Automatic::yes);
  ratio_ = addChooser(form, &ratioLabel_);
  order_ = addChooser(form, &orderLabel_);
  connect(translationColor_, &ColorChooser::chosen, this,
          [this](const std::optional<QColor>& color) {
            change([&](PanelStyle& style) { style.translation = color; });
          });
  connect(ratio_, &QComboBox::activated, this, [this](int index) {
    change([&](PanelStyle& style) { style.translationRatio = ratio_->itemData(index).toDouble(); });
  });
  connect(order_, &QComboBox::activated, this, [this](int index) {
    change([&](PanelStyle& style) {
      style.order = static_cast<VoiceOrder>(order_->itemData(index).toInt());
    });
  });
}

void AppearanceView::addPanel(QVBoxLayout* form) {
  panelHeading_ = addHeading(form);
  lines_ = addChooser(form, &linesLabel_);
  connect(lines_, &QComboBox::activated, &settings_, &AppSettings::setCaptionLines);
  highContrast_ = addToggle(form);
  connect(highContrast_, &QCheckBox::toggled, &settings_, &AppSettings::setFollowsHighContrast);
}

QSize AppearanceView::minimumSizeHint() const {
  const int width = scroll_->widget()->minimumSizeHint().width() +
                    scroll_->verticalScrollBar()->sizeHint().width();
  return {width, QWidget::minimumSizeHint().height()};
}

void AppearanceView::present() {
  presentTexts();
  presentStyle();
}

void AppearanceView::presentTexts() {
  preview_->translate();
  labelChooser(backdropLabel_, backdrop_, L("Preview On", "미리 보기 바탕"));
  labelChooser(setLabel_, set_, L("Ready Set", "준비된 스타일"));
  reset_->setText(L("Reset This Set", "이 스타일 되돌리기"));
  nameControl(reset_, reset_->text());
  textHeading_->setText(L("Text", "글자"));
  labelChooser(sizeLabel_, size_, L("Text Size", "글자 크기"));
  labelChooser(familyLabel_, family_, L("Font", "글꼴"));
  labelChooser(weightLabel_, weight_, L("Weight", "굵기"));
  labelChooser(spacingLabel_, spacing_, L("Line Height", "줄 높이"));
  labelChooser(colorLabel_, color_, L("Text Color", "글자 색"));
  labelChooser(edgeLabel_, edge_, L("Outline or Shadow", "윤곽선·그림자"));
  backgroundHeading_->setText(L("Background", "배경"));
  labelChooser(backgroundLabel_, background_, L("Background Color", "배경색"));
  opacityLabel_->setText(L("Background Opacity", "배경 불투명도"));
  nameControl(opacity_, opacityLabel_->text());
  labelChooser(cornerLabel_, corner_, L("Corners", "모서리"));
  translationHeading_->setText(L("Translation", "번역"));
  labelChooser(translationColorLabel_, translationColor_, L("Translation Color", "번역 색"));
  labelChooser(ratioLabel_, ratio_, L("Translation Size", "번역 크기"));
  labelChooser(orderLabel_, order_, L("Order", "순서"));
  panelHeading_->setText(L("Caption Window", "자막 창"));
  labelChooser(linesLabel_, lines_, L("Height", "높이"));
  labelToggle(highContrast_, L("Follow the desktop’s high contrast", "데스크톱의 고대비 따르기"));
  color_->translate();
  background_->translate();
  translationColor_->translate(L("Like the Text", "글자와 같게"));
  std::vector<Choice> backdrops;
  for (const StylePreview::Backdrop each : StylePreview::allBackdrops) {
    backdrops.push_back({velun::title(each), int(each)});
  }
  const int backdrop = std::max(backdrop_->currentIndex(), 0);
  fillChooser(family_, familyChoices(QFontDatabase::families()),
              familyChoice(settings_.panelStyle().fontFamily));
  fillChooser(backdrop_, backdrops, backdrops[static_cast<std::size_t>(backdrop)]);
}

void AppearanceView::presentStyle() {
  const PanelStyle& style = settings_.panelStyle();
  std::vector<Choice> sets;
  for (const PanelSet set : allPanelSets) sets.push_back({velun::title(set), int(set)});
  fillChooser(set_, sets, choiceOf(sets, int(settings_.panelSet())));
  fillChooser(size_, sizeChoices(), sizeChoice(settings_.fontSize()));
  // There may be thousands.
  if (family_->currentData() != style.fontFamily) {
    fillChooser(family_, familyChoices(QFontDatabase::families()), familyChoice(style.fontFamily));
  }
  fillChooser(weight_, weightChoices(), choiceOf(weightChoices(), style.fontWeight));
  fillChooser(spacing_, spacingChoices(), spacingChoice(style.lineSpacing));
  fillChooser(edge_, edgeChoices(), choiceOf(edgeChoices(), int(style.edge)));
  fillChooser(corner_, cornerChoices(), choiceOf(cornerChoices(), style.corner));
  fillChooser(ratio_, ratioChoices(), percentChoice(style.translationRatio));
  fillChooser(order_, orderChoices(), choiceOf(orderChoices(), int(style.order)));
  fillChooser(lines_, lineChoices(), choiceOf(lineChoices(), settings_.captionLines()));
  color_->setColor(style.text);
  background_->setColor(style.background);
  translationColor_->setColor(style.translation);
  const QSignalBlocker blocker(highContrast_);
  highContrast_->setChecked(settings_.followsHighContrast());
  reset_->setEnabled(style != standardStyle(settings_.panelSet()));
  preview_->setStyle(style, settings_.fontSize());
  presentOpacity();
  presentContrast();
}

void AppearanceView::presentOpacity() {
  const int percent = qRound(settings_.panelStyle().opacity.value_or(kUsualOpacity) * 100);
  const QSignalBlocker blocker(opacity_);
  opacity_->setValue(percent);
  opacityValue_->setText(QStringLiteral("%1%").arg(percent));
}

void AppearanceView::previewOpacity() {
  PanelStyle style = settings_.panelStyle();
  style.opacity = opacity_->value() / 100.0;
  preview_->setStyle(style, settings_.fontSize());
  opacityValue_->setText(QStringLiteral("%1%").arg(opacity_->value()));
}

void AppearanceView::presentContrast() {
  const double contrast = lowestContrast(settings_.panelStyle());
  const QString ratio = QString::number(contrast, 'f', 1) + QStringLiteral(":1");
  contrast_->setNotice(
      contrast >= kMinContrast
          ? QString()
          : L("Contrast " + ratio +
                  ", below 4.5:1: hard to read for many people, above all over "
                  "bright or busy windows. An outline or a more opaque "
                  "background helps.",
              "대비 " + ratio +
                  ", 4.5:1 미만: 많은 사람이 읽기 어렵고, 밝거나 복잡한 창 위에서는 "
                  "더 어렵습니다. 윤곽선을 넣거나 배경을 더 불투명하게 하면 "
                  "좋아집니다."));
}

}  // namespace velun
