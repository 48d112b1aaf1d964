// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <stdexcept>

namespace velun {

/// An error that carries one finished text in the interface language, ready to be shown.
class Failure : public std::runtime_error {
 public:
  explicit Failure(const QString& errorDescription)
      : std::runtime_error(errorDescription.toStdString()), errorDescription_(errorDescription) {}

  const QString& errorDescription() const { return errorDescription_; }

 private:
  QString errorDescription_;
};

/// A task ended because it was asked to, not because anything went wrong.
class Cancelled final : public Failure {
 public:
  Cancelled() : Failure(QString()) {}
};

/// The text to show for any error: a `Failure`'s own, else the exception's.
QString descriptionOf(const std::exception& error);

}  // namespace velun
