// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/global_shortcuts.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QVariantMap>

class QDBusMessage;

namespace velun {

/// Asks the desktop for keys by the global-shortcuts portal
/// (org.freedesktop.portal.GlobalShortcuts). Where the portal is missing, way() is `none`.
class PortalShortcuts final : public GlobalShortcuts {
  Q_OBJECT

 public:
  explicit PortalShortcuts(const QDBusConnection& bus);
  ~PortalShortcuts() override;

  Way way() const override { return isThere_ ? Way::desktop : Way::none; }
  void setShortcuts(const std::vector<GlobalShortcut>& shortcuts) override;
  QStringList taken() const override { return {}; }
  bool isRefused() const override { return isRefused_; }

  /// The keys in the portal's notation, such as "CTRL+ALT+c"; empty for keys without one.
  static QString triggerOf(const QKeySequence& keys);

 private Q_SLOTS:
  void responded(uint response, const QVariantMap& results, const QDBusMessage& message);
  void activated(const QDBusObjectPath& session, const QString& id, qulonglong time,
                 const QVariantMap& options);

 private:
  void findPortal();
  void openSession();
  void bind();
  void closeSession();
  void close(const QString& session);
  void setRefused(bool isRefused);
  /// Calls a method whose response arrives as a signal of the object named by `token`.
  void request(const QString& token, const QString& method, const QVariantList& arguments);
  QString requestPath(const QString& token) const;

  QDBusConnection bus_;
  bool isThere_ = false;
  bool isRefused_ = false;
  std::vector<GlobalShortcut> shortcuts_;
  QString session_;
  /// Counts the sessions, which are closed when the shortcuts change.
  int number_ = 0;
};

}  // namespace velun
