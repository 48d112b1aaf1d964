// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/preference_document.h"

#include <QJsonDocument>

namespace velun {

std::optional<QJsonObject> readPreferenceDocument(const QByteArray& bytes) {
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
  if (error.error != QJsonParseError::NoError || !document.isObject()) return std::nullopt;
  return document.object();
}

}  // namespace velun
