// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

namespace velun {

/// What a modal alert says and offers, in the interface language.
struct Question {
  QString message;
  QString informativeText;
  /// Titles in order; the first is the default.
  QStringList buttons;
  bool isWarning = false;

  bool operator==(const Question&) const = default;
};

/// The one alert for everything that could not be done, with `message` as its informative text.
Question errorQuestion(const QString& message);

/// Whoever can show a modal alert. Main thread.
class ModalQuestion {
 public:
  virtual ~ModalQuestion() = default;

  /// Brings the application to the front, shows the alert and waits. The index of the button that
  /// closed it; none when it was closed in any other way.
  virtual std::optional<int> ask(const Question& question) = 0;
};

}  // namespace velun
