// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/alert_dialog.h"

#include "ui/common/accessible_role.h"
#include "ui/common/selectable_label.h"
#include "ui/common/symbol.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

namespace velun {

namespace {

constexpr int kSymbolSize = 40;
constexpr int kTextWidth = 340;
/// Of an explanation; a longer one is scrolled, so that the buttons stay on the screen.
constexpr int kMaxTextHeight = 320;
constexpr QColor kWarningColor(214, 142, 24);

QPixmap picture(bool isWarning, qreal ratio) {
  if (!isWarning) return QApplication::windowIcon().pixmap(QSize(kSymbolSize, kSymbolSize), ratio);
  return symbolPixmap(QStringLiteral("exclamationmark.triangle"), kSymbolSize, kWarningColor,
                      ratio);
}

SelectableLabel* textLabel(const QString& text, QWidget* parent) {
  auto* label = new SelectableLabel(text, parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setFixedWidth(kTextWidth);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

QWidget* scrolledIfLong(SelectableLabel* label, QWidget* parent) {
  if (label->heightForWidth(kTextWidth) <= kMaxTextHeight) return label;
  auto* area = new QScrollArea(parent);
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  area->setWidget(label);
  area->setAccessibleName(label->text());
  area->setFixedSize(kTextWidth + area->verticalScrollBar()->sizeHint().width(), kMaxTextHeight);
  return area;
}

}  // namespace

AlertDialog::AlertDialog(const Question& question) {
  setWindowModality(Qt::ApplicationModal);
  // Otherwise the caption panel, which is above ordinary windows, would cover it.
  setWindowFlag(Qt::WindowStaysOnTopHint);
  setWindowTitle(QStringLiteral("Velun"));
  setAccessibleName(question.message);

  auto* symbol = new QLabel(this);
  hideFromAccessibility(*symbol);
  symbol->setPixmap(picture(question.isWarning, devicePixelRatioF()));
  QLabel* message = textLabel(question.message, this);
  QFont bold = message->font();
  bold.setBold(true);
  message->setFont(bold);
  QWidget* explanation = scrolledIfLong(textLabel(question.informativeText, this), this);

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(22, 20, 22, 18);
  grid->setHorizontalSpacing(16);
  grid->setVerticalSpacing(8);
  grid->addWidget(symbol, 0, 0, 2, 1, Qt::AlignTop);
  grid->addWidget(message, 0, 1);
  grid->addWidget(explanation, 1, 1);
  grid->setRowMinimumHeight(2, 8);
  grid->addLayout(makeButtons(question.buttons), 3, 0, 1, 2);
  grid->setSizeConstraint(QLayout::SetFixedSize);
}

QLayout* AlertDialog::makeButtons(const QStringList& texts) {
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  buttons->addStretch();
  for (int i = 0; i < texts.size(); ++i) {
    auto* button = new QPushButton(texts[i], this);
    button->setDefault(i == 0);
    button->setAutoDefault(i == 0);
    button->setToolTip(texts[i]);
    connect(button, &QPushButton::clicked, this, [this, i] {
      answer_ = i;
      accept();
    });
    buttons->addWidget(button);
    if (i == 0) button->setFocus();
  }
  return buttons;
}

}  // namespace velun
