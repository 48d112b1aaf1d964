// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/captions_adaptor.h"

#include "platform/desktop/linux/dbus_caption_feed.h"

#include <QDBusMetaType>

namespace velun {

QDBusArgument& operator<<(QDBusArgument& argument, const DBusCaptionLine& line) {
  argument.beginStructure();
  argument << line.id << line.text << line.details;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusCaptionLine& line) {
  argument.beginStructure();
  argument >> line.id >> line.text >> line.details;
  argument.endStructure();
  return argument;
}

CaptionsAdaptor::CaptionsAdaptor(QObject* parent, const DBusCaptionFeed& feed)
    : QDBusAbstractAdaptor(parent), feed_(feed) {
  qDBusRegisterMetaType<DBusCaptionLine>();
  qDBusRegisterMetaType<QList<DBusCaptionLine>>();
  qDBusRegisterMetaType<QMap<QString, QString>>();
}

QString CaptionsAdaptor::state() const {
  return feed_.stateName();
}

QList<DBusCaptionLine> CaptionsAdaptor::LastLines(uint count) const {
  return feed_.lastLines(count);
}

}  // namespace velun
