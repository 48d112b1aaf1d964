// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QList>
#include <QVariantMap>

namespace velun {

class DBusCaptionFeed;

/// A line in the D-Bus form (ssa{sv}): its id, its text, and the details "time" (x, milliseconds
/// since 1970), "language" (s) and "translations" (a{ss}), each where it is known.
struct DBusCaptionLine {
  QString id;
  QString text;
  QVariantMap details;
};

QDBusArgument& operator<<(QDBusArgument& argument, const DBusCaptionLine& line);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusCaptionLine& line);

/// The interface `app.velun.Velun.Captions`, which docs/live-feed.md describes.
class CaptionsAdaptor final : public QDBusAbstractAdaptor {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "app.velun.Velun.Captions")
  Q_CLASSINFO("D-Bus Introspection",
              "  <interface name=\"app.velun.Velun.Captions\">\n"
              "    <property name=\"State\" type=\"s\" access=\"read\"/>\n"
              "    <method name=\"LastLines\">\n"
              "      <arg name=\"count\" type=\"u\" direction=\"in\"/>\n"
              "      <arg name=\"lines\" type=\"a(ssa{sv})\" direction=\"out\"/>\n"
              "    </method>\n"
              "    <signal name=\"Draft\">\n"
              "      <arg name=\"text\" type=\"s\"/>\n"
              "    </signal>\n"
              "    <signal name=\"Line\">\n"
              "      <arg name=\"id\" type=\"s\"/>\n"
              "      <arg name=\"text\" type=\"s\"/>\n"
              "      <arg name=\"details\" type=\"a{sv}\"/>\n"
              "    </signal>\n"
              "    <signal name=\"Translation\">\n"
              "      <arg name=\"id\" type=\"s\"/>\n"
              "      <arg name=\"language\" type=\"s\"/>\n"
              "      <arg name=\"text\" type=\"s\"/>\n"
              "    </signal>\n"
              "    <signal name=\"StateChanged\">\n"
              "      <arg name=\"state\" type=\"s\"/>\n"
              "    </signal>\n"
              "  </interface>\n")
  Q_PROPERTY(QString State READ state)

 public:
  /// `feed` must outlive the adaptor.
  CaptionsAdaptor(QObject* parent, const DBusCaptionFeed& feed);

  QString state() const;

 public Q_SLOTS:
  /// The last lines, oldest first.
  QList<velun::DBusCaptionLine> LastLines(uint count) const;

 Q_SIGNALS:
  // The names are those of the interface.
  void Draft(const QString& text);
  void Line(const QString& id, const QString& text, const QVariantMap& details);
  void Translation(const QString& id, const QString& language, const QString& text);
  void StateChanged(const QString& state);

 private:
  const DBusCaptionFeed& feed_;
};

}  // namespace velun

Q_DECLARE_METATYPE(velun::DBusCaptionLine)
