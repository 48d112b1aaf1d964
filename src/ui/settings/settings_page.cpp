// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/settings_page.h"

#include <QScrollBar>
#include <QVBoxLayout>

namespace velun {

SettingsPage::SettingsPage(QWidget* parent) : QScrollArea(parent) {
  auto* content = new QWidget(this);
  // The last control must not grow with the page.
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(22, 16, 22, 18);
  form_ = new QVBoxLayout;
  form_->setSpacing(7);
  column->addLayout(form_);
  column->addStretch(1);
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  // Scrolls to the focused control.
  setFocusPolicy(Qt::NoFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidget(content);
}

QSize SettingsPage::minimumSizeHint() const {
  const int width = widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width();
  return {width, QScrollArea::minimumSizeHint().height()};
}

}  // namespace velun
