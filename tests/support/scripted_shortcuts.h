// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/global_shortcuts.h"

namespace velun::test {

/// Keys in every window as the test says.
class ScriptedShortcuts final : public GlobalShortcuts {
 public:
  Way way() const override { return way_; }
  void setShortcuts(const std::vector<GlobalShortcut>& shortcuts) override { set = shortcuts; }
  QStringList taken() const override { return taken_; }
  bool isRefused() const override { return isRefused_; }

  void setWay(Way way) {
    way_ = way;
    Q_EMIT changed();
  }
  void take(const QString& id) {
    taken_ << id;
    Q_EMIT changed();
  }
  void setRefused(bool isRefused) {
    isRefused_ = isRefused;
    Q_EMIT changed();
  }

  std::vector<GlobalShortcut> set;

 private:
  Way way_ = Way::program;
  QStringList taken_;
  bool isRefused_ = false;
};

}  // namespace velun::test
