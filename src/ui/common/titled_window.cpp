// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/titled_window.h"

#include "ui/common/accessible_role.h"
#include "ui/common/window_frame.h"

#include <algorithm>
#include <QKeyEvent>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>
#include <QVBoxLayout>

namespace velun {

namespace {

/// The screen's area below a title bar and above the lower border.
QRect contentArea(const QScreen& screen) {
  constexpr QMargins frame = usualFrameMargins();
  return screen.availableGeometry().adjusted(0, frame.top(), 0, -frame.bottom());
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
  const auto* closing = new QShortcut(QKeySequence::Close, this);
  connect(closing, &QShortcut::activated, this, &QWidget::close);
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

void TitledWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && !resizable_) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
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
