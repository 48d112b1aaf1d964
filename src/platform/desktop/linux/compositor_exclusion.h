// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QDBusConnection>
#include <QObject>
#include <QTemporaryFile>

namespace velun {

/// Asks KWin to leave windows of this program out of screen casts. Its windows have a property for
/// that since 6.6, which a script that runs inside KWin can set. Main thread.
class CompositorExclusion final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "app.velun.Velun.CaptureExclusion")

 public:
  /// `bus` is the session's.
  explicit CompositorExclusion(const QDBusConnection& bus);
  ~CompositorExclusion() override;

  /// Whether the compositor has said that it can; false until it answers, and once it could not be
  /// asked for something.
  bool isPossible() const { return isPossible_; }

  /// For the windows of this program with that title, shown now or later.
  void setExcluded(const QString& windowTitle, bool excluded);

 public Q_SLOTS:
  /// The script's answer, over D-Bus.
  void answer(bool possible);

 Q_SIGNALS:
  void isPossibleChanged();

 private:
  void run(const QString& windowTitle, bool excluded);
  void unload() const;

  QDBusConnection bus_;
  bool isPossible_ = false;
  QString windowTitle_;
  bool excluded_ = false;
  std::unique_ptr<QTemporaryFile> script_;
};

}  // namespace velun
