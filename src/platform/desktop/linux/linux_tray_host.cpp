// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/linux_tray_host.h"

#include "platform/desktop/linux/embedded_tray_watch.h"
#include "platform/foundation/clock.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

namespace velun {

namespace {

constexpr auto kWatcher = "org.kde.StatusNotifierWatcher";
constexpr auto kWatcherPath = "/StatusNotifierWatcher";

/// How long the desktop is given at login before the user is told that there is no host.
constexpr std::chrono::milliseconds kPatience(2000);

}  // namespace

LinuxTrayHost::LinuxTrayHost(Clock& clock, const QDBusConnection& bus) : clock_(clock), bus_(bus) {}

LinuxTrayHost::~LinuxTrayHost() = default;

void LinuxTrayHost::search() {
  embedded_ = std::make_unique<EmbeddedTrayWatch>([this] { considerEmbedded(); });
  patience_ = clock_.callAfter(kPatience, [this] {
    // A watcher that does not answer must not keep the other protocol waiting for ever.
    busAnswered_ = true;
    considerEmbedded();
    if (!protocol_) Q_EMIT missing();
  });
  if (bus_.isConnected()) {
    watchBus();
    askWatcher();
  } else {
    busAnswered_ = true;
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
  auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
    answer->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    busAnswered_ = true;
    if (reply.isValid() && reply.value().variant().toBool()) {
      settle(Protocol::statusNotifier);
    } else {
      considerEmbedded();
    }
  });
}

void LinuxTrayHost::considerEmbedded() {
  // An embedding tray that is there while the bus has no host belongs to a desktop that has no
  // other; waiting longer would only keep the icon away.
  if (busAnswered_ && embedded_->isThere()) settle(Protocol::embedded);
}

void LinuxTrayHost::settle(Protocol protocol) {
  if (protocol_) return;
  protocol_ = protocol;
  patience_.reset();
  watcher_.reset();
  bus_.disconnect(kWatcher, kWatcherPath, kWatcher, "StatusNotifierHostRegistered", this,
                  SLOT(askWatcher()));
  embedded_->stopWatching();
  Q_EMIT found();
}

std::optional<std::uint32_t> LinuxTrayHost::foreground() const {
  return embedded_ ? embedded_->foreground() : std::nullopt;
}

}  // namespace velun
