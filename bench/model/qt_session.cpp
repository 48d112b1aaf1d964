// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/qt_session.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace velun::bench {

namespace {

QString timeText(Instant time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch();
  return QDateTime::fromSecsSinceEpoch(seconds.count(), Qt::UTC).toString(Qt::ISODate);
}

Instant timeOf(const QJsonValue& value) {
  const QDateTime time = QDateTime::fromString(value.toString(), Qt::ISODate);
  return Instant(std::chrono::seconds(time.toSecsSinceEpoch()));
}

QString idText(const QUuid& id) {
  return id.toString(QUuid::WithoutBraces).toUpper();
}

QJsonObject toJson(const Line& line) {
  QJsonObject object{{"id", idText(line.id)}, {"text", line.text}};
  if (line.time) object["time"] = timeText(*line.time);
  if (line.sourceLanguage) object["sourceLanguage"] = *line.sourceLanguage;
  if (line.input) object["input"] = rawValue(*line.input);
  if (line.legacyTimestamp) object["legacyTimestamp"] = *line.legacyTimestamp;
  if (line.legacyTranslation) object["legacyTranslation"] = *line.legacyTranslation;
  QJsonObject translations;
  for (const auto& [language, text] : line.translations) translations[language] = text;
  object["translations"] = translations;
  return object;
}

std::optional<QString> optionalText(const QJsonValue& value) {
  return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

Line toLine(const QJsonObject& object) {
  Line line{QUuid(object["id"].toString()), {}, object["text"].toString(), {}, {}, {}, {}, {}};
  if (object["time"].isString()) line.time = timeOf(object["time"]);
  line.sourceLanguage = optionalText(object["sourceLanguage"]);
  for (const AudioInput input : allAudioInputs) {
    if (object["input"] == rawValue(input)) line.input = input;
  }
  line.legacyTimestamp = optionalText(object["legacyTimestamp"]);
  line.legacyTranslation = optionalText(object["legacyTranslation"]);
  const QJsonObject translations = object["translations"].toObject();
  for (auto it = translations.begin(); it != translations.end(); ++it) {
    line.translations.emplace(it.key(), it.value().toString());
  }
  return line;
}

}  // namespace

QByteArray encodeWithQt(const CaptionSession& session) {
  QJsonArray lines;
  for (const Line& line : session.lines) lines.append(toJson(line));
  QJsonObject object{{"schemaVersion", session.schemaVersion},
                     {"id", idText(session.id)},
                     {"startedAt", timeText(session.startedAt)},
                     {"title", session.title},
                     {"lines", lines}};
  if (session.endedAt) object["endedAt"] = timeText(*session.endedAt);
  return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

CaptionSession decodeWithQt(const QByteArray& bytes) {
  const QJsonObject object = QJsonDocument::fromJson(bytes).object();
  CaptionSession session;
  session.schemaVersion = object["schemaVersion"].toInt();
  session.id = QUuid(object["id"].toString());
  session.startedAt = timeOf(object["startedAt"]);
  if (object["endedAt"].isString()) session.endedAt = timeOf(object["endedAt"]);
  session.title = object["title"].toString();
  for (const auto& line : object["lines"].toArray()) {
    session.lines.push_back(toLine(line.toObject()));
  }
  return session;
}

}  // namespace velun::bench
