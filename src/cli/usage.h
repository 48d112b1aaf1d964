// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <stdexcept>

namespace velun {

/// The exit status after arguments that make no sense.
constexpr int kUsageStatus = 2;

/// Arguments that make no sense. The text is localized.
class UsageError final : public std::runtime_error {
 public:
  explicit UsageError(const QString& text) : std::runtime_error(text.toStdString()) {}
};

/// Only this text was asked for: the help or the version.
struct HelpRequested {
  QString text;
};

}  // namespace velun
