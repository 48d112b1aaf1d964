// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

namespace velun {

/// The texts of a modal alert, in the interface language.
struct Question {
  QString message;
  QString informativeText;
  /// Titles in order; the first is the default.
  QStringList buttons;
  bool isWarning = false;

  bool operator==(const Question&) const = default;
};

/// The alert that reports a failed action, with `message` as its informative text.
Question errorQuestion(const QString& message);

/// Shows modal alerts. Main thread.
class ModalQuestion {
 public:
  virtual ~ModalQuestion() = default;

  /// Brings the application to the front, shows the alert and waits for the answer. Returns the
  /// index of the clicked button; nullopt if the alert was closed in another way.
  virtual std::optional<int> ask(const Question& question) = 0;
};

}  // namespace velun
