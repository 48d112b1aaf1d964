// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/selectable_label.h"

#include "language/localization.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>

namespace velun {

void SelectableLabel::copy() {
  if (!hasSelectedText()) return;
  QString text = selectedText();
  text.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
  QGuiApplication::clipboard()->setText(text);
}

void SelectableLabel::selectAll() {
  setSelection(0, static_cast<int>(text().size()));
}

bool SelectableLabel::event(QEvent* event) {
  const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
  if (!isKey || !isSelectable()) return PaddedLabel::event(event);
  auto* key = static_cast<QKeyEvent*>(event);
  const bool copies = key->matches(QKeySequence::Copy);
  if (!copies && !key->matches(QKeySequence::SelectAll)) return PaddedLabel::event(event);
  // Accepting the first event makes Qt send the second, instead of running the window's shortcut.
  event->accept();
  if (event->type() == QEvent::KeyPress) copies ? copy() : selectAll();
  return true;
}

void SelectableLabel::contextMenuEvent(QContextMenuEvent* event) {
  if (!isSelectable()) return PaddedLabel::contextMenuEvent(event);
  QMenu menu(this);
  QAction* copyText = menu.addAction(L("Copy", "복사"), this, &SelectableLabel::copy);
  copyText->setShortcut(QKeySequence::Copy);
  copyText->setEnabled(hasSelectedText());
  menu.addAction(L("Select All", "전체 선택"), this, &SelectableLabel::selectAll)
      ->setShortcut(QKeySequence::SelectAll);
  menu.exec(event->globalPos());
}

}  // namespace velun
