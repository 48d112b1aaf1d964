// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/settings_pages.h"

#include "language/localization.h"
#include "ui/common/symbol.h"

#include <algorithm>
#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QListWidget>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kMinListWidth = 150;
constexpr int kListMargin = 8;
constexpr int kRowPadding = 8;
constexpr int kIconSide = 18;

}  // namespace

SettingsPages::SettingsPages(std::vector<Page> pages, QWidget* parent)
    : QWidget(parent),
      pages_(std::move(pages)),
      list_(new QListWidget),
      stack_(new QStackedWidget) {
  makeList();
  auto* line = new QFrame;
  line->setFrameShape(QFrame::VLine);
  line->setForegroundRole(QPalette::Mid);
  line->setFrameShadow(QFrame::Plain);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  auto* side = new QVBoxLayout;
  side->setContentsMargins(kListMargin, kListMargin, kListMargin, kListMargin);
  side->addWidget(list_);
  row->addLayout(side);
  row->addWidget(line);
  row->addWidget(stack_, 1);
  connect(list_, &QListWidget::currentRowChanged, stack_, &QStackedWidget::setCurrentIndex);
  // Assistive technology selects a row without making it the current one.
  connect(list_, &QListWidget::itemSelectionChanged, this, [this] {
    if (const auto selected = list_->selectedItems(); !selected.isEmpty()) {
      list_->setCurrentItem(selected.front());
    }
  });
  // A scroll area does so only for controls that get the focus from another one inside it.
  connect(qApp, &QApplication::focusChanged, this,
          [this](const QWidget*, QWidget* control) { showFocused(control); });
  connect(&Localization::shared(), &Localization::languageChanged, this, &SettingsPages::translate);
  addShortcuts();
  translate();
  list_->setCurrentRow(0);
}

void SettingsPages::makeList() {
  list_->setFrameShape(QFrame::NoFrame);
  // Beside the page, not a field in it.
  list_->viewport()->setAutoFillBackground(false);
  list_->setIconSize({kIconSide, kIconSide});
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  for (const Page& page : pages_) {
    stack_->addWidget(page.widget);
    new QListWidgetItem(symbolIcon(page.symbol), QString(), list_);
  }
}

void SettingsPages::addShortcuts() {
  const auto add = [this](const QList<QKeySequence>& keys, int distance) {
    for (const QKeySequence& each : keys) {
      const auto* shortcut =
          new QShortcut(each, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
      connect(shortcut, &QShortcut::activated, this, [this, distance] { step(distance); });
    }
  };
  add({Qt::CTRL | Qt::Key_Tab, Qt::CTRL | Qt::Key_PageDown}, 1);
  add({Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, Qt::CTRL | Qt::Key_PageUp}, -1);
}

void SettingsPages::showPage(const QWidget& page) {
  const auto isIt = [&page](const Page& each) {
    return each.widget == &page;
  };
  const auto at = std::find_if(pages_.begin(), pages_.end(), isIt);
  if (at != pages_.end()) list_->setCurrentRow(static_cast<int>(at - pages_.begin()));
}

void SettingsPages::step(int distance) {
  // The control that has the focus goes with its page.
  list_->setFocus(Qt::ShortcutFocusReason);
  list_->setCurrentRow((list_->currentRow() + distance + list_->count()) % list_->count());
}

void SettingsPages::showFocused(QWidget* control) {
  if (!control || !stack_->isAncestorOf(control)) return;
  for (QWidget* each = control->parentWidget(); each != stack_; each = each->parentWidget()) {
    if (auto* area = qobject_cast<QScrollArea*>(each)) area->ensureWidgetVisible(control);
  }
}

void SettingsPages::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  const bool isOfSize = event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
  if (isOfSize && list_) fitList();
}

void SettingsPages::translate() {
  list_->setAccessibleName(L("Settings Pages", "설정 페이지"));
  for (int row = 0; row < list_->count(); ++row) {
    list_->item(row)->setText(pages_[static_cast<std::size_t>(row)].title());
  }
  fitList();
}

void SettingsPages::fitList() {
  const int height = std::max(kIconSide, list_->fontMetrics().height()) + 2 * kRowPadding;
  for (int row = 0; row < list_->count(); ++row) {
    list_->item(row)->setSizeHint({0, height});
  }
  int width = 0;
  for (int row = 0; row < list_->count(); ++row) {
    width = std::max(width, list_->fontMetrics().horizontalAdvance(list_->item(row)->text()));
  }
  list_->setFixedWidth(std::max(kMinListWidth, width + kIconSide + 3 * kListMargin));
}

}  // namespace velun
