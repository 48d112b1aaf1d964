// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <QObject>

namespace velun {

/// The part of the desktop that shows status items. The toolkit settles on a protocol once, when
/// its tray is first touched; so nothing touches it before a host is known. Main thread.
class TrayHost : public QObject {
  Q_OBJECT

 public:
  enum class Protocol {
    /// The host fetches the item and its menu over D-Bus.
    statusNotifier,
    /// The item is a small window inside the host's.
    embedded,
  };

  /// Begins to look; returns at once.
  virtual void search() = 0;

  /// None until a host was found; stays what it was when the host leaves.
  virtual std::optional<Protocol> protocol() const = 0;

  /// The colour (0xRRGGBB) that the host asks symbolic icons to have; none when it does not say.
  virtual std::optional<std::uint32_t> foreground() const = 0;

 Q_SIGNALS:
  /// A host is there. Once.
  void found();

  /// None is there after a short wait; one that comes later is still found. At most once.
  void missing();
};

}  // namespace velun
