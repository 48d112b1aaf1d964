// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/modal_question.h"

#include <exception>
#include <memory>
#include <optional>
#include <QSize>
#include <QString>

class QWidget;

namespace velun {

/// Window operations that all windows of the program share. Main thread.
class WindowPresentation final {
 public:
  /// Shows the window, brings it to the front and focuses it.
  static void present(QWidget& window);

  /// Shows the error alert: modal, with `message` as its informative text.
  static void showError(const QString& message);
  /// Shows the error alert with the error's localized description.
  static void showError(const std::exception& error);

  /// Brings the program to the front, shows the question and blocks until it is closed. Returns the
  /// index of the pressed button, or nullopt when it was closed in another way.
  static std::optional<int> ask(const Question& question);

  /// Whether a question or an alert is open. External commands are ignored meanwhile.
  static bool isModalOpen();

  /// Creates an ordinary titled window that owns `view`. `size` is the size of the content; a
  /// window that is not resizable keeps it. Centred on the screen when first shown; closing hides
  /// it.
  static std::unique_ptr<QWidget> makeWindow(const QString& title, QSize size,
                                             std::unique_ptr<QWidget> view, bool resizable);
};

}  // namespace velun
