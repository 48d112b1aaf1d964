// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/compositor_exclusion.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
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
function apply(window) {
  if (window && window.pid === pid && window.caption === title) {
    window.excludeFromCapture = excluded;
  }
}
const windows = workspace.windowList ? workspace.windowList() : workspace.clientList();
const possible = windows.some((window) => window.excludeFromCapture !== undefined);
if (possible) {
  windows.forEach(apply);
  (workspace.windowAdded || workspace.clientAdded).connect(apply);
}
callDBus(service, path, "app.velun.Velun.CaptureExclusion", "answer", possible);
)";

QString scriptName() {
  return QStringLiteral("app.velun.Velun.%1").arg(QCoreApplication::applicationPid());
}

QDBusMessage call(const QString& method, const QVariantList& arguments) {
  QDBusMessage message = QDBusMessage::createMethodCall(kService, kPath, kInterface, method);
  message.setArguments(arguments);
  return message;
}

/// The values as JavaScript literals.
QString literals(const QString& windowTitle, bool excluded, const QDBusConnection& bus) {
  const QJsonArray values = {QCoreApplication::applicationPid(), windowTitle, excluded,
                             bus.baseService(), kObject};
  return QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact));
}

}  // namespace

CompositorExclusion::CompositorExclusion(const QDBusConnection& bus) : bus_(bus) {
  if (!bus_.isConnected() || !bus_.interface()->isServiceRegistered(kService)) return;
  bus_.registerObject(kObject, this,
                      QDBusConnection::ExportScriptableContents | QDBusConnection::ExportAllSlots);
  run(QString(), false);
}

CompositorExclusion::~CompositorExclusion() {
  if (script_) unload();
}

void CompositorExclusion::setExcluded(const QString& windowTitle, bool excluded) {
  const bool same = windowTitle == windowTitle_ && excluded == excluded_;
  if (!isPossible_ || same) return;
  windowTitle_ = windowTitle;
  excluded_ = excluded;
  run(windowTitle, excluded);
}

void CompositorExclusion::run(const QString& windowTitle, bool excluded) {
  if (script_) unload();
  script_ = std::make_unique<QTemporaryFile>();
  const QByteArray text =
      QString::fromLatin1(kScript).arg(literals(windowTitle, excluded, bus_)).toUtf8();
  if (!script_->open() || script_->write(text) != text.size() || !script_->flush()) {
    // For example on a full disk. The caller falls back to another way.
    script_.reset();
    answer(false);
    return;
  }
  script_->close();
  // KWin handles both calls in this order and reads the file during the first.
  bus_.asyncCall(call(QStringLiteral("loadScript"), {script_->fileName(), scriptName()}));
  bus_.asyncCall(call(QStringLiteral("start"), {}));
}

void CompositorExclusion::unload() const {
  bus_.asyncCall(call(QStringLiteral("unloadScript"), {scriptName()}));
}

void CompositorExclusion::answer(bool possible) {
  if (std::exchange(isPossible_, possible) != possible) Q_EMIT isPossibleChanged();
}

}  // namespace velun
