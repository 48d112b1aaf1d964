// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// An output or an input device that the user has chosen.
struct DeviceChoice {
  /// As in `AudioTarget`; empty for the default device, whichever that is.
  QString id;
  /// The name at the time of the choice, for when the device is not connected.
  QString name;

  bool operator==(const DeviceChoice&) const = default;
};

}  // namespace velun
