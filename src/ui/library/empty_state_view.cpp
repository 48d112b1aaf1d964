// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/empty_state_view.h"

#include "ui/common/symbol.h"

#include <QLabel>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kSymbolSize = 34;

}  // namespace

EmptyStateView::EmptyStateView(QWidget* parent)
    : QWidget(parent), symbol_(new QLabel(this)), text_(new QLabel(this)) {
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
  symbol_->setVisible(!symbol.isEmpty());
  if (!symbol.isEmpty()) {
    const QColor color = palette().color(QPalette::Disabled, QPalette::WindowText);
    symbol_->setPixmap(symbolPixmap(symbol, kSymbolSize, color, devicePixelRatioF()));
  }
  text_->setText(text);
}

QString EmptyStateView::text() const {
  return text_->text();
}

}  // namespace velun
