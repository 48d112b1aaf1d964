// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <stdexcept>

namespace velun {

/// An error with a text for the user, localized when it was created.
class Failure : public std::runtime_error {
 public:
  explicit Failure(const QString& errorDescription)
      : std::runtime_error(errorDescription.toStdString()), errorDescription_(errorDescription) {}

  const QString& errorDescription() const { return errorDescription_; }

 private:
  QString errorDescription_;
};

/// A task ended because a stop was requested.
class Cancelled final : public Failure {
 public:
  Cancelled() : Failure(QString()) {}
};

/// The text to show for any error: that of a `Failure`, otherwise `what()`.
QString descriptionOf(const std::exception& error);

}  // namespace velun
