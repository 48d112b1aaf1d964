// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/global_shortcuts.h"

#include <vector>

namespace velun {

class AppCommands;
class PreferenceStore;

/// The commands that can have a key in every window, and the keys that the user has chosen; none at
/// first. Main thread.
class ShortcutSet final : public QObject {
  Q_OBJECT

 public:
  struct Row {
    /// The command's name for other programs.
    QString id;
    QString title;
    QKeySequence keys;
    /// Another program has the keys.
    bool isTaken = false;
  };

  /// All must outlive the set.
  ShortcutSet(AppCommands& commands, GlobalShortcuts& shortcuts, PreferenceStore& preferences);

  GlobalShortcuts::Way way() const { return shortcuts_.way(); }
  /// As in `GlobalShortcuts`.
  bool isRefused() const { return shortcuts_.isRefused(); }
  std::vector<Row> rows() const;
  /// Chooses keys, of which only the first one counts, and stores them. Empty keys remove them.
  void setKeys(const QString& id, const QKeySequence& keys);

 Q_SIGNALS:
  /// The way, a refusal, the rows or their titles have changed.
  void changed();

 private:
  QKeySequence keysOf(const QString& id) const;
  void apply();

  AppCommands& commands_;
  GlobalShortcuts& shortcuts_;
  PreferenceStore& preferences_;
};

}  // namespace velun
