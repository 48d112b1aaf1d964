// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/titled_window.h"

#include "ui/common/accessible_role.h"

#include <QScreen>
#include <QShowEvent>
#include <QVBoxLayout>

namespace velun {

TitledWindow::TitledWindow(std::unique_ptr<QWidget> view, QSize size, bool resizable)
    : QWidget(nullptr, Qt::Window) {
  setAccessibleRole(*this, QAccessible::Window);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(view.release());
  size = size.boundedTo(screen()->availableSize());
  resize(size);
  if (!resizable) setFixedSize(size);
}

void TitledWindow::showEvent(QShowEvent* event) {
  if (!placed_ && !testAttribute(Qt::WA_Moved) && !event->spontaneous()) {
    const QRect free = screen()->availableGeometry();
    move(free.center() - rect().center());
  }
  placed_ = true;
  QWidget::showEvent(event);
}

}  // namespace velun
