// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/model_row_view.h"

#include "ui/common/accessible_role.h"
#include "ui/common/notice_label.h"
#include "ui/models/flow_layout.h"

#include <algorithm>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr qreal kSmallText = 0.9;
constexpr float kSecondaryOpacity = 0.72F;
constexpr qreal kCorner = 8;
constexpr int kProgressSteps = 1000;
constexpr int kProgressHeight = 6;

QLabel* makeLabel(QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setIndent(0);
  return label;
}

void setSmall(QLabel* label) {
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * kSmallText);
  label->setFont(font);
}

void setText(QLabel* label, const QString& text) {
  label->setText(text);
  label->setVisible(!text.isEmpty());
}

}  // namespace

ModelRowView::ModelRowView(QWidget* parent) : QFrame(parent) {
  setAccessibleRole(*this, QAccessible::Grouping);
  title_ = makeLabel(this);
  QFont bold = title_->font();
  bold.setWeight(QFont::DemiBold);
  title_->setFont(bold);
  mark_ = new QLabel(this);
  setSmall(mark_);
  facts_ = makeLabel(this);
  setSmall(facts_);
  progress_ = new QProgressBar(this);
  progress_->setRange(0, kProgressSteps);
  progress_->setTextVisible(false);
  progress_->setFixedHeight(kProgressHeight);
  progressText_ = makeLabel(this);
  setSmall(progressText_);
  notice_ = new NoticeLabel(this);
  notice_->setWordWrap(true);
  bar_ = new QWidget(this);
  new FlowLayout(bar_);

  auto* heading = new QHBoxLayout;
  heading->addWidget(title_, 1);
  heading->addWidget(mark_, 0, Qt::AlignTop);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(12, 10, 12, 10);
  column->setSpacing(5);
  column->addLayout(heading);
  for (QWidget* each : std::initializer_list<QWidget*>{facts_, progress_, progressText_, notice_}) {
    column->addWidget(each);
  }
  column->addWidget(bar_);
  fade();
}

void ModelRowView::setRow(const ModelRow& row) {
  if (row == row_) return;
  const bool changesActions = row.actions != row_.actions || row.title != row_.title;
  row_ = row;
  showTexts();
  showProgress();
  if (changesActions) setActions(row.actions);
}

void ModelRowView::showTexts() {
  setAccessibleName(row_.mark.isEmpty() ? row_.title : row_.title + ", " + row_.mark);
  setAccessibleDescription(row_.facts.join("\n"));
  title_->setText(row_.title);
  setText(mark_, row_.mark);
  setText(facts_, row_.facts.join("\n"));
  notice_->setNotice(row_.notice);
}

void ModelRowView::showProgress() {
  progress_->setVisible(row_.progress.has_value());
  progress_->setAccessibleName(row_.title);
  progress_->setValue(static_cast<int>(row_.progress.value_or(0) * kProgressSteps));
  setText(progressText_, row_.progressText);
}

void ModelRowView::setActions(const std::vector<ModelRowAction>& actions) {
  const auto hasFocus = [](const QPushButton* button) {
    return button->hasFocus();
  };
  const bool hadFocus = std::any_of(buttons_.begin(), buttons_.end(), hasFocus);
  const std::size_t kept = std::min(actions.size(), buttons_.size());
  for (std::size_t i = kept; i < buttons_.size(); ++i) buttons_[i]->deleteLater();
  for (std::size_t i = kept; i < buttons_.size(); ++i) buttons_[i]->hide();
  buttons_.resize(kept);
  while (buttons_.size() < actions.size()) {
    auto* button = new QPushButton(bar_);
    button->setAutoDefault(false);
    const std::size_t index = buttons_.size();
    connect(button, &QPushButton::clicked, this, [this, index] {
      if (index < row_.actions.size()) Q_EMIT triggered(row_.actions[index].action);
    });
    bar_->layout()->addWidget(button);
    button->show();
    buttons_.push_back(button);
  }
  for (std::size_t i = 0; i < actions.size(); ++i) {
    const ModelRowAction& action = actions[i];
    buttons_[i]->setText(action.text);
    buttons_[i]->setEnabled(action.isEnabled);
    buttons_[i]->setToolTip(action.toolTip.isEmpty() ? action.text : action.toolTip);
    // Several rows have a button with the same text.
    buttons_[i]->setAccessibleName(action.text + ": " + row_.title);
    buttons_[i]->setAccessibleDescription(action.toolTip);
  }
  bar_->setVisible(!actions.empty());
  if (!hadFocus || std::any_of(buttons_.begin(), buttons_.end(), hasFocus)) return;
  const auto enabled = std::find_if(buttons_.begin(), buttons_.end(),
                                    [](const QPushButton* button) { return button->isEnabled(); });
  if (enabled != buttons_.end()) (*enabled)->setFocus(Qt::OtherFocusReason);
}

void ModelRowView::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) fade();
}

void ModelRowView::fade() {
  QColor text = palette().color(QPalette::WindowText);
  text.setAlphaF(kSecondaryOpacity);
  for (QLabel* label : {facts_, progressText_}) {
    if (label->palette().color(QPalette::WindowText) == text) continue;
    QPalette colors;
    colors.setColor(QPalette::WindowText, text);
    label->setPalette(colors);
  }
}

void ModelRowView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath card;
  card.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
  painter.fillPath(card, palette().color(QPalette::Base));
  QColor edge = palette().color(QPalette::WindowText);
  edge.setAlphaF(0.14F);
  painter.setPen(edge);
  painter.drawPath(card);
}

}  // namespace velun
