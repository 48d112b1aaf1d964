// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/titled_window.h"

#include "ui/common/accessible_role.h"

#include <algorithm>
#include <QScreen>
#include <QShowEvent>
#include <QVBoxLayout>

namespace velun {

namespace {

/// The screen's size without a title bar and borders. Their real size is known only after the
/// window manager has placed the window, so typical values are used.
QRect contentArea(const QScreen& screen) {
  constexpr int titleBar = 34;
  constexpr int border = 6;
  return screen.availableGeometry().adjusted(0, titleBar, 0, -border);
}

}  // namespace

TitledWindow::TitledWindow(std::unique_ptr<QWidget> view, QSize size, bool resizable)
    : QWidget(nullptr, Qt::Window),
      view_(view.get()),
      size_(size.boundedTo(contentArea(*screen()).size())),
      resizable_(resizable) {
  setAccessibleRole(*this, QAccessible::Window);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(view.release());
  resize(size_);
  fit();
}

void TitledWindow::fit() {
  if (resizable_) return;
  const int width = std::max(size_.width(), view_->minimumSizeHint().width());
  const QLayout* layout = view_->layout();
  const int height = layout && layout->hasHeightForWidth()
                         ? layout->totalMinimumHeightForWidth(width)
                         : view_->minimumSizeHint().height();
  const QSize needed(width, std::max(size_.height(), height));
  setFixedSize(needed.boundedTo(contentArea(*screen()).size()));
}

bool TitledWindow::event(QEvent* event) {
  const bool isHandled = QWidget::event(event);
  if (event->type() == QEvent::LayoutRequest) fit();
  return isHandled;
}

void TitledWindow::showEvent(QShowEvent* event) {
  if (!placed_ && !testAttribute(Qt::WA_Moved) && !event->spontaneous()) {
    const QPoint middle = screen()->availableGeometry().center() - rect().center();
    const QRect area = contentArea(*screen());
    const int lowest = area.bottom() + 1 - height();
    move(middle.x(), std::max(area.top(), std::min(middle.y(), lowest)));
  }
  placed_ = true;
  QWidget::showEvent(event);
}

}  // namespace velun
