// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/tray_host.h"

namespace velun::test {

/// A tray host whose presence the test sets.
class ScriptedTrayHost final : public TrayHost {
 public:
  void search() override { ++searches; }
  std::optional<Protocol> protocol() const override { return found_; }
  bool coloursSymbolicIcons() const override { return coloursIcons; }
  std::optional<std::uint32_t> foreground() const override { return requestedColour; }

  void come(Protocol protocol) {
    found_ = protocol;
    Q_EMIT found();
  }
  void stayAway() { Q_EMIT missing(); }

  int searches = 0;
  bool coloursIcons = false;
  std::optional<std::uint32_t> requestedColour;

 private:
  std::optional<Protocol> found_;
};

}  // namespace velun::test
