// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/empty_state_view.h"

#include "ui/common/accessible_role.h"
#include "ui/common/notice_label.h"
#include "ui/common/symbol.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kSymbolSize = 34;

}  // namespace

EmptyStateView::EmptyStateView(QWidget* parent)
    : QWidget(parent), symbol_(new QLabel(this)), text_(new NoticeLabel(this)) {
  hideFromAccessibility(*symbol_);
  symbol_->setAlignment(Qt::AlignCenter);
  text_->setAlignment(Qt::AlignCenter);
  text_->setWordWrap(true);
  auto* column = new QVBoxLayout(this);
  column->addStretch(2);
  column->addWidget(symbol_);
  column->addSpacing(6);
  column->addWidget(text_);
  column->addStretch(3);
}

void EmptyStateView::show(const QString& symbol, const QString& text) {
  shownSymbol_ = symbol;
  text_->setNotice(text);
  drawSymbol();
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
