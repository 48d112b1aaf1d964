// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTemporaryFile>

namespace velun {

/// Makes KWin leave windows of this program out of screen casts. Since KWin 6.6 its windows have a
/// property for that, which a script running inside KWin can set. Main thread.
class CompositorExclusion final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "app.velun.Velun.CaptureExclusion")

 public:
  /// `bus` is the session bus.
  explicit CompositorExclusion(const QDBusConnection& bus);
  ~CompositorExclusion() override;

  /// Whether KWin supports it. False until KWin replies, after a request failed, and while KWin
  /// does not run.
  bool isPossible() const { return isPossible_; }

  /// Applies to all windows of this program with that title, shown now or later.
  void setExcluded(const QString& windowTitle, bool excluded);

 public Q_SLOTS:
  /// Called by the script over D-Bus.
  void answer(bool possible);

 Q_SIGNALS:
  void isPossibleChanged();

 private:
  void run();
  void call(const QString& method, const QVariantList& arguments);
  void unload() const;

  QDBusConnection bus_;
  QDBusServiceWatcher kwin_;
  bool isPossible_ = false;
  QString windowTitle_;
  bool excluded_ = false;
  std::unique_ptr<QTemporaryFile> script_;
};

}  // namespace velun
