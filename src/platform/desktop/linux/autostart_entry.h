// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/login_start.h"

#include <QString>

namespace velun {

/// Starts the program at log-in by a desktop file in the user's autostart folder, as the Desktop
/// Application Autostart Specification describes.
class AutostartEntry final : public LoginStart {
 public:
  /// `name` is the desktop file's without its suffix; `program` the path to start.
  AutostartEntry(const QString& name, QString program);

  /// False in a sandbox, whose autostart folder the desktop does not read.
  bool isPossible() const override;
  bool isEnabled() const override;
  void setEnabled(bool enabled) override;

  /// The path of the desktop file.
  const QString& path() const { return path_; }

 private:
  QString name_;
  QString program_;
  QString path_;
};

}  // namespace velun
