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

/// The small window operations that all windows of the program share. Main thread.
class WindowPresentation final {
 public:
  /// Shows the window, brings it to the front and gives it the keyboard.
  static void present(QWidget& window);

  /// The one error alert: modal, with `message` as its informative text.
  static void showError(const QString& message);
  /// The same with the error's finished description.
  static void showError(const std::exception& error);

  /// Brings the program to the front and asks; returns when it is answered. Gives the index of the
  /// button, or none when it was closed in another way.
  static std::optional<int> ask(const Question& question);

  /// Whether a question or an alert is open: commands from outside are ignored meanwhile.
  static bool isModalOpen();

  /// An ordinary titled window around `view`, which it takes over. `size` is the content's; a
  /// window that is not resizable keeps it. Stands in the middle of the screen when first shown;
  /// closing hides it.
  static std::unique_ptr<QWidget> makeWindow(const QString& title, QSize size,
                                             std::unique_ptr<QWidget> view, bool resizable);
};

}  // namespace velun
