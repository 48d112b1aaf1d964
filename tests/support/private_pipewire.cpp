// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/private_pipewire.h"

#include <csignal>
#include <QJsonArray>
#include <QJsonDocument>
#include <sys/prctl.h>

namespace velun::test {

namespace {

const QString script = VELUN_TEST_SUPPORT "/private_pipewire";

}  // namespace

PrivatePipeWire::~PrivatePipeWire() {
  end(&manager_);
  end(&daemon_);
  end(&bus_);
}

bool PrivatePipeWire::startDaemon() {
  if (bus_.state() == QProcess::NotRunning) {
    launch(&bus_, "bus");
    if (!run({"wait-bus"})) return false;
  }
  launch(&daemon_, "daemon");
  return run({"wait-daemon"});
}

bool PrivatePipeWire::startManager() {
  launch(&manager_, "manager");
  return run({"wait-manager"});
}

void PrivatePipeWire::killDaemon() {
  end(&daemon_);
  manager_.waitForFinished(5000);
  end(&manager_);
}

void PrivatePipeWire::killManager() {
  end(&manager_);
}

bool PrivatePipeWire::addSink(const QString& name, int rate, const QString& channels) {
  return run({"sink", name, QString::number(rate), channels});
}

bool PrivatePipeWire::addMicrophone(const QString& name, int rate, const QString& channels) {
  return run({"microphone", name, QString::number(rate), channels});
}

bool PrivatePipeWire::remove(const QString& name) {
  return run({"remove", name});
}

bool PrivatePipeWire::setDefaultSink(const QString& name) {
  return run({"default-sink", name});
}

bool PrivatePipeWire::setDefaultSource(const QString& name) {
  return run({"default-source", name});
}

bool PrivatePipeWire::awaitDefaultSink(const QString& name) {
  return run({"await-default-sink", name});
}

bool PrivatePipeWire::awaitDefaultSource(const QString& name) {
  return run({"await-default-source", name});
}

QJsonObject PrivatePipeWire::node(const QString& name) {
  QProcess dump;
  dump.start("pw-dump", QStringList());
  dump.waitForFinished();
  const QJsonArray objects = QJsonDocument::fromJson(dump.readAllStandardOutput()).array();
  for (const auto& object : objects) {
    const QJsonValue info = object.toObject()["info"];
    if (info["props"]["node.name"].toString() == name) return info.toObject();
  }
  return {};
}

bool PrivatePipeWire::run(const QStringList& arguments) {
  return QProcess::execute(script, arguments) == 0;
}

void PrivatePipeWire::launch(QProcess* process, const QString& part) {
  process->setProcessChannelMode(QProcess::MergedChannels);
  process->setStandardOutputFile(QProcess::nullDevice());
  process->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
  process->start(script, {part});
  process->waitForStarted();
}

void PrivatePipeWire::end(QProcess* process) {
  if (process->state() == QProcess::NotRunning) return;
  process->kill();
  process->waitForFinished();
}

}  // namespace velun::test
