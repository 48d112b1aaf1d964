// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/empty_state_view.h"

#include "ui/common/accessible_role.h"
#include "ui/common/notice_label.h"
#include "ui/common/symbol.h"

#include <QAction>
#include <QEvent>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kSymbolSize = 34;

}  // namespace

EmptyStateView::EmptyStateView(QWidget* parent)
    : QWidget(parent),
      symbol_(new QLabel(this)),
      text_(new NoticeLabel(this)),
      hint_(new SelectableLabel(this)),
      button_(new QToolButton(this)) {
  hideFromAccessibility(*symbol_);
  symbol_->setAlignment(Qt::AlignCenter);
  text_->setAlignment(Qt::AlignCenter);
  text_->setWordWrap(true);
  hint_->setAlignment(Qt::AlignCenter);
  hint_->setWordWrap(true);
  button_->setToolButtonStyle(Qt::ToolButtonTextOnly);
  button_->setFocusPolicy(Qt::TabFocus);
  setHint({});
  auto* column = new QVBoxLayout(this);
  column->addStretch(2);
  column->addWidget(symbol_);
  column->addSpacing(6);
  column->addWidget(text_);
  column->addWidget(hint_);
  column->addSpacing(6);
  column->addWidget(button_, 0, Qt::AlignHCenter);
  column->addStretch(3);
}

void EmptyStateView::show(const QString& symbol, const QString& text) {
  shownSymbol_ = symbol;
  text_->setNotice(text);
  drawSymbol();
}

void EmptyStateView::setHint(const QString& hint, QAction* action) {
  hint_->setText(hint);
  hint_->setVisible(!hint.isEmpty());
  if (action) {
    button_->setDefaultAction(action);
  } else if (QAction* shown = button_->defaultAction()) {
    button_->removeAction(shown);
  }
  button_->setVisible(action != nullptr);
}

QString EmptyStateView::hint() const {
  return hint_->text();
}

void EmptyStateView::drawSymbol() {
  symbol_->setVisible(!shownSymbol_.isEmpty());
  if (shownSymbol_.isEmpty()) return;
  const QColor color = palette().color(QPalette::Disabled, QPalette::WindowText);
  symbol_->setPixmap(symbolPixmap(shownSymbol_, kSymbolSize, color, devicePixelRatioF()));
}

void EmptyStateView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) drawSymbol();
}

QString EmptyStateView::text() const {
  return text_->text();
}

}  // namespace velun
