// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/window_presentation.h"

#include "platform/foundation/failure.h"
#include "ui/common/alert_dialog.h"
#include "ui/common/titled_window.h"

#include <QApplication>

namespace velun {

void WindowPresentation::present(QWidget& window) {
  if (window.isMinimized()) window.showNormal();
  window.show();
  window.raise();
  window.activateWindow();
}

void WindowPresentation::showError(const QString& message) {
  ask(errorQuestion(message));
}

void WindowPresentation::showError(const std::exception& error) {
  showError(descriptionOf(error));
}

std::optional<int> WindowPresentation::ask(const Question& question) {
  AlertDialog alert(question);
  present(alert);
  alert.exec();
  return alert.answer();
}

bool WindowPresentation::isModalOpen() {
  return QApplication::activeModalWidget() != nullptr;
}

std::unique_ptr<QWidget> WindowPresentation::makeWindow(const QString& title, QSize size,
                                                        std::unique_ptr<QWidget> view,
                                                        bool resizable) {
  auto window = std::make_unique<TitledWindow>(std::move(view), size, resizable);
  window->setWindowTitle(title);
  return window;
}

}  // namespace velun
