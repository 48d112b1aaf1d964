// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace velun::test {

/// PipeWire with its session manager for one test program, in the private folders that
/// `run_isolated` has made. Both can be killed and started again; they end with the program.
class PrivatePipeWire {
 public:
  ~PrivatePipeWire();

  /// Each waits until the process responds; false when it does not within 20 s.
  bool start() { return startDaemon() && startManager(); }
  bool startDaemon();
  bool startManager();

  /// Kills at once, as in a crash. The session manager ends with PipeWire.
  void killDaemon();
  void killManager();

  /// Adds an output without a sound card, with channels such as "FL FR FC LFE RL RR".
  bool addSink(const QString& name, int rate = 48'000, const QString& channels = "FL FR");
  /// Adds a microphone that captures what plays on the output NAME-voice.
  bool addMicrophone(const QString& name, int rate = 48'000, const QString& channels = "FL FR");
  bool remove(const QString& name);

  /// The node with this name from `pw-dump`: its "state" and "props"; empty without such a node.
  static QJsonObject node(const QString& name);
  static QString stateOf(const QString& name) { return node(name).value("state").toString(); }

  /// Chooses a device as the user would and waits until it is the default.
  bool setDefaultSink(const QString& name);
  bool setDefaultSource(const QString& name);
  bool awaitDefaultSink(const QString& name);
  bool awaitDefaultSource(const QString& name);

 private:
  static bool run(const QStringList& arguments);
  static void launch(QProcess* process, const QString& part);
  static void end(QProcess* process);

  QProcess bus_;
  QProcess daemon_;
  QProcess manager_;
};

}  // namespace velun::test
