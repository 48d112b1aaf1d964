// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QKeySequence>
#include <QObject>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// A key that works while other programs have the keyboard.
struct GlobalShortcut {
  QString id;
  /// For the user, in the interface language.
  QString description;
  /// One key with its modifiers.
  QKeySequence keys;

  bool operator==(const GlobalShortcut&) const = default;
};

/// Keys of the program that work in every window. Main thread.
class GlobalShortcuts : public QObject {
  Q_OBJECT

 public:
  /// Who decides about the keys.
  enum class Way {
    /// The program takes the keys.
    program,
    /// The desktop asks the user, and may choose other keys.
    desktop,
    /// Programs cannot have such keys here.
    none,
  };

  virtual Way way() const = 0;

  /// Replaces all shortcuts. Shortcuts with the same keys as an earlier one have no effect.
  virtual void setShortcuts(const std::vector<GlobalShortcut>& shortcuts) = 0;

  /// The ids of the shortcuts whose keys another program has.
  virtual QStringList taken() const = 0;

  /// Whether the desktop, or the user whom it has asked, refuses the keys. It asks again when they
  /// change.
  virtual bool isRefused() const { return false; }

 Q_SIGNALS:
  /// The user pressed the keys. Not repeated while they are held.
  void triggered(const QString& id);
  /// way(), taken() or isRefused() has changed.
  void changed();
};

}  // namespace velun
