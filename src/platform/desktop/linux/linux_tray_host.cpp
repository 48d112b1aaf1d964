// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/linux_tray_host.h"

#include "platform/desktop/linux/embedded_tray_watch.h"
#include "platform/foundation/clock.h"

#include <algorithm>
#include <array>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace velun {

namespace {

constexpr auto kWatcher = "org.kde.StatusNotifierWatcher";
constexpr auto kWatcherPath = "/StatusNotifierWatcher";

/// At login the desktop needs some time to start its host.
constexpr std::chrono::milliseconds kSearchTimeout(2000);

/// Desktops whose bars colour symbolic icons, by their names in XDG_CURRENT_DESKTOP. LXQt's panel
/// and the bars of bare compositors draw them as they are.
constexpr std::array kColouringDesktops = {"GNOME",      "KDE",    "XFCE",  "MATE",
                                           "X-Cinnamon", "Budgie", "Unity", "Pantheon"};

}  // namespace

LinuxTrayHost::LinuxTrayHost(Clock& clock, const QDBusConnection& bus) : clock_(clock), bus_(bus) {}

LinuxTrayHost::~LinuxTrayHost() = default;

void LinuxTrayHost::search() {
  embedded_ = std::make_unique<EmbeddedTrayWatch>();
  connect(embedded_.get(), &EmbeddedTrayWatch::changed, this, &LinuxTrayHost::considerEmbedded);
  timeout_ = clock_.callAfter(kSearchTimeout, [this] {
    // A StatusNotifier watcher that does not answer must not delay the other protocol any longer.
    busReplied_ = true;
    considerEmbedded();
    if (!protocol_) Q_EMIT missing();
  });
  if (bus_.isConnected()) {
    watchBus();
    askWatcher();
  } else {
    busReplied_ = true;
    considerEmbedded();
  }
}

void LinuxTrayHost::watchBus() {
  watcher_ = std::make_unique<QDBusServiceWatcher>(kWatcher, bus_,
                                                   QDBusServiceWatcher::WatchForRegistration);
  connect(watcher_.get(), &QDBusServiceWatcher::serviceRegistered, this,
          &LinuxTrayHost::askWatcher);
  bus_.connect(kWatcher, kWatcherPath, kWatcher, "StatusNotifierHostRegistered", this,
               SLOT(askWatcher()));
}

void LinuxTrayHost::askWatcher() {
  if (protocol_) return;
  auto call = QDBusMessage::createMethodCall(kWatcher, kWatcherPath,
                                             "org.freedesktop.DBus.Properties", "Get");
  call << kWatcher << "IsStatusNotifierHostRegistered";
  call.setAutoStartService(false);
  auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    busReplied_ = true;
    if (reply.isValid() && reply.value().variant().toBool()) {
      finish(Protocol::statusNotifier);
    } else {
      considerEmbedded();
    }
  });
}

void LinuxTrayHost::considerEmbedded() {
  // An XEmbed tray while the bus has no host means that this desktop has no other kind: waiting
  // longer would only delay the icon.
  if (busReplied_ && embedded_->hasTray()) finish(Protocol::embedded);
}

void LinuxTrayHost::finish(Protocol protocol) {
  if (protocol_) return;
  protocol_ = protocol;
  timeout_.reset();
  watcher_.reset();
  bus_.disconnect(kWatcher, kWatcherPath, kWatcher, "StatusNotifierHostRegistered", this,
                  SLOT(askWatcher()));
  embedded_->stopWatching();
  Q_EMIT found();
}

bool LinuxTrayHost::coloursSymbolicIcons() const {
  if (protocol_ != Protocol::statusNotifier) return false;
  const QList<QByteArray> desktops = qgetenv("XDG_CURRENT_DESKTOP").split(':');
  return std::ranges::any_of(kColouringDesktops,
                             [&](const char* name) { return desktops.contains(name); });
}

std::optional<std::uint32_t> LinuxTrayHost::foreground() const {
  return embedded_ ? embedded_->foreground() : std::nullopt;
}

}  // namespace velun
