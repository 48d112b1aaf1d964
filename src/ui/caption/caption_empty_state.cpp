// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_empty_state.h"

#include "captions/caption_target.h"
#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/caption_button.h"
#include "ui/caption/download_offer_view.h"
#include "ui/caption/level_meter.h"
#include "ui/caption/transcript_formats.h"
#include "ui/caption/transcript_layout.h"
#include "ui/common/app_commands.h"

#include <QAction>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

namespace velun {

namespace {

constexpr double kTitleSize = 13;
constexpr double kHintSize = 11;
constexpr int kGap = 8;

}  // namespace

CaptionEmptyState::CaptionEmptyState(CaptionViewModel& model, AppCommands& commands,
                                     BetterCaptions* better, QWidget* parent)
    : QWidget(parent),
      model_(model),
      commands_(commands),
      title_(new QLabel(this)),
      start_(new CaptionButton(this)),
      hint_(new QLabel(this)),
      meter_(new LevelMeter([&model] { return model.meterBands(); }, this)),
      offer_(new DownloadOfferView(model, better, this)) {
  for (const auto& [label, size] : {std::pair(title_, kTitleSize), std::pair(hint_, kHintSize)}) {
    label->setFont(systemFont(size));
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    QPalette colors = label->palette();
    colors.setColor(QPalette::WindowText, CaptionAppearance::secondaryText);
    label->setPalette(colors);
  }
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(TranscriptLayout::horizontalInset, 0,
                             TranscriptLayout::horizontalInset, 0);
  column->setSpacing(kGap);
  column->addStretch(1);
  column->addWidget(title_);
  column->addWidget(start_, 0, Qt::AlignHCenter);
  column->addWidget(hint_);
  column->addWidget(meter_, 0, Qt::AlignHCenter);
  column->addWidget(offer_);
  column->addStretch(1);
  connect(start_, &CaptionButton::clicked, &commands.action(AppCommand::toggleCaptions),
          &QAction::trigger);
  connect(offer_, &DownloadOfferView::modelsRequested, &commands_.action(AppCommand::showModels),
          &QAction::trigger);
  const auto follow = [this](auto& object, auto signal) {
    connect(&object, signal, this, &CaptionEmptyState::present);
  };
  follow(model, &CaptionViewModel::isRunningChanged);
  follow(model, &CaptionViewModel::statusChanged);
  follow(*offer_, &DownloadOfferView::shownChanged);
  follow(commands, &AppCommands::refreshed);
  follow(model.settings(), &AppSettings::inputChoiceChanged);
  follow(model.settings(), &AppSettings::programChanged);
  follow(model.settings(), &AppSettings::localeIDChanged);
  follow(Localization::shared(), &Localization::languageChanged);
  present();
}

void CaptionEmptyState::present() {
  const AppSettings& settings = model_.settings();
  const QString source =
      captionSourceTitle(settings) + QStringLiteral(" · ") + languageName(settings.localeID());
  title_->setText(model_.isRunning() ? L("Captions appear here", "자막이 여기에 표시됩니다")
                                     : source);
  const QAction& command = commands_.action(AppCommand::toggleCaptions);
  const bool canStart = !model_.isRunning() && !givesWay();
  // Qt would move the focus of a hidden button into the header and show it.
  if (!canStart && start_->hasFocus()) setFocus();
  title_->setVisible(!givesWay());
  start_->setVisible(canStart);
  hint_->setText(model_.isRunning() ? source
                                    : L("Press Start, or use the status icon.",
                                        "‘시작’을 누르거나 상태 아이콘을 사용하세요."));
  const bool hasRoom = !givesWay() && !offer_->isVisibleTo(this);
  hint_->setVisible(hasRoom);
  meter_->setRunning(model_.isRunning());
  meter_->setVisible(hasRoom && model_.isRunning());
  start_->setText(L("Start", "시작"));
  start_->setToolTip(command.text());
  start_->setEnabled(command.isEnabled());
  Q_EMIT changed();
}

bool CaptionEmptyState::givesWay() const {
  return model_.status() && !model_.status()->isEmpty() && !offer_->isVisibleTo(this);
}

void CaptionEmptyState::mousePressEvent(QMouseEvent* event) {
  // With a focus policy for clicks, screen readers would offer the empty space as a place to go to.
  if (QWidget* proxy = focusProxy()) proxy->setFocus(Qt::MouseFocusReason);
  QWidget::mousePressEvent(event);
}

void CaptionEmptyState::setColors(const CaptionColors& colors) {
  start_->setColors(colors);
  offer_->setColors(colors);
}

}  // namespace velun
