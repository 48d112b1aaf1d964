// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/result_codec.h"

#include <algorithm>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace velun {

QByteArray encodedResult(const TranscriptionResult& result) {
  QJsonObject object{{"text", result.text}};
  QJsonArray words;
  for (const RecognizedWord& word : result.words) {
    words.append(QJsonArray{word.text, word.start, word.end, word.confidence});
  }
  if (!words.isEmpty()) object["words"] = words;
  if (result.isCut) object["isCut"] = true;
  if (result.until) object["until"] = *result.until;
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

TranscriptionResult decodedResult(const QByteArray& body, bool isFinal) {
  const QJsonObject object = QJsonDocument::fromJson(body).object();
  TranscriptionResult result{object["text"].toString(), isFinal};
  for (const QJsonValue& each : object["words"].toArray()) {
    const QJsonArray word = each.toArray();
    if (word.size() != 4 || !word[0].isString()) continue;
    result.words.push_back({word[0].toString(), word[1].toDouble(), word[2].toDouble(),
                            std::clamp(word[3].toDouble(), 0.0, 1.0)});
  }
  result.isCut = object["isCut"].toBool();
  if (object["until"].isDouble()) result.until = object["until"].toDouble();
  return result;
}

}  // namespace velun
