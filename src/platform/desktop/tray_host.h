// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <QObject>

namespace velun {

/// Finds the part of the desktop that shows status icons. Qt chooses the protocol once, when its
/// system tray is first used, so nothing may use it before a host is found. Main thread.
class TrayHost : public QObject {
  Q_OBJECT

 public:
  enum class Protocol {
    /// The host reads the icon and its menu over D-Bus.
    statusNotifier,
    /// The icon is a small window embedded in the host's window.
    embedded,
  };

  /// Starts the search; returns at once.
  virtual void search() = 0;

  /// Empty until a host is found; keeps its value when the host goes away.
  virtual std::optional<Protocol> protocol() const = 0;

  /// Whether the host draws a symbolic icon, given by its name, in the colour of its own texts.
  /// Hosts that do not draw it dark even on a dark bar.
  virtual bool coloursSymbolicIcons() const = 0;

  /// The colour (0xRRGGBB) that the host requests for symbolic icons; empty when it requests none.
  virtual std::optional<std::uint32_t> foreground() const = 0;

 Q_SIGNALS:
  /// A host was found. Emitted once.
  void found();

  /// No host appeared within a short time. One that appears later is still found. Emitted at most
  /// once.
  void missing();
};

}  // namespace velun
