// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/compositor_exclusion.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QJsonArray>
#include <QJsonDocument>
#include <utility>

namespace velun {

namespace {

const QString kService = QStringLiteral("org.kde.KWin");
const QString kPath = QStringLiteral("/Scripting");
const QString kInterface = QStringLiteral("org.kde.kwin.Scripting");
const QString kObject = QStringLiteral("/app/velun/Velun/CaptureExclusion");

// KWin 5 calls clientList what KWin 6 calls windowList.
constexpr char kScript[] = R"(
const [pid, title, excluded, service, path] = %1;
let answered = false;
function apply(window) {
  if (!window) return;
  const possible = window.excludeFromCapture !== undefined;
  if (!answered) {
    answered = true;
    callDBus(service, path, "app.velun.Velun.CaptureExclusion", "answer", possible);
  }
  // A layer surface and the menus over it have no title.
  if (possible && window.pid === pid && (window.caption === title || window.caption === "")) {
    window.excludeFromCapture = excluded;
  }
}
(workspace.windowList ? workspace.windowList() : workspace.clientList()).forEach(apply);
(workspace.windowAdded || workspace.clientAdded).connect(apply);
)";

QString scriptName() {
  return QStringLiteral("app.velun.Velun.%1").arg(QCoreApplication::applicationPid());
}

QDBusMessage message(const QString& method, const QVariantList& arguments) {
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, method);
  call.setArguments(arguments);
  return call;
}

/// The values as JavaScript literals.
QString literals(const QString& windowTitle, bool excluded, const QDBusConnection& bus) {
  const QJsonArray values = {QCoreApplication::applicationPid(), windowTitle, excluded,
                             bus.baseService(), kObject};
  return QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact));
}

}  // namespace

CompositorExclusion::CompositorExclusion(const QDBusConnection& bus)
    : bus_(bus),
      kwin_(
          kService, bus,
          QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration) {
  if (!bus_.isConnected()) return;
  bus_.registerObject(kObject, this,
                      QDBusConnection::ExportScriptableContents | QDBusConnection::ExportAllSlots);
  connect(&kwin_, &QDBusServiceWatcher::serviceRegistered, this, &CompositorExclusion::run);
  connect(&kwin_, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
    // Its scripts and the windows' properties end with it.
    script_.reset();
    answer(false);
  });
  if (bus_.interface()->isServiceRegistered(kService)) run();
}

CompositorExclusion::~CompositorExclusion() {
  if (script_) unload();
}

void CompositorExclusion::setExcluded(const QString& windowTitle, bool excluded) {
  const bool same = windowTitle == windowTitle_ && excluded == excluded_;
  if (!isPossible_ || same) return;
  windowTitle_ = windowTitle;
  excluded_ = excluded;
  run();
}

void CompositorExclusion::run() {
  if (script_) unload();
  script_ = std::make_unique<QTemporaryFile>();
  const QByteArray text =
      QString::fromLatin1(kScript).arg(literals(windowTitle_, excluded_, bus_)).toUtf8();
  if (!script_->open() || script_->write(text) != text.size() || !script_->flush()) {
    // For example on a full disk. The caller falls back to another way.
    script_.reset();
    answer(false);
    return;
  }
  script_->close();
  // KWin handles both calls in this order and reads the file during the first.
  call(QStringLiteral("loadScript"), {script_->fileName(), scriptName()});
  call(QStringLiteral("start"), {});
}

void CompositorExclusion::call(const QString& method, const QVariantList& arguments) {
  auto* pending = new QDBusPendingCallWatcher(bus_.asyncCall(message(method, arguments)), this);
  connect(pending, &QDBusPendingCallWatcher::finished, this, [this, pending] {
    pending->deleteLater();
    if (pending->isError()) answer(false);
  });
}

void CompositorExclusion::unload() const {
  bus_.asyncCall(message(QStringLiteral("unloadScript"), {scriptName()}));
}

void CompositorExclusion::answer(bool possible) {
  if (std::exchange(isPossible_, possible) != possible) Q_EMIT isPossibleChanged();
}

}  // namespace velun
