// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_writer.h"

#include "model/session_file/json_writer.h"
#include "model/session_file/session_fields.h"

#include <string>

namespace velun {

namespace {

void appendId(JsonWriter& json, const QUuid& id) {
  char* out = json.room(kIdLength + 2);
  *out++ = '"';
  out = writeId(out, id);
  *out++ = '"';
  json.wrote(out);
}

void appendTime(JsonWriter& json, Instant time) {
  char* out = json.room(kTimeLength + 2);
  *out++ = '"';
  out = writeTime(out, time);
  *out++ = '"';
  json.wrote(out);
}

void appendOptional(JsonWriter& json, std::string_view key, const std::optional<QString>& text) {
  if (!text) return;
  json.raw(key);
  json.string(*text);
  json.raw(",\n");
}

void appendTranslations(JsonWriter& json, const Translations& translations) {
  bool isFirst = true;
  for (const auto& [language, text] : translations) {
    json.raw(isFirst ? "        " : ",\n        ");
    json.string(language);
    json.raw(" : ");
    json.string(text);
    isFirst = false;
  }
}

}  // namespace

void appendSessionHead(JsonWriter& json, const CaptionSession& session) {
  json.raw("{\n");
  if (session.endedAt) {
    json.raw("  \"endedAt\" : ");
    appendTime(json, *session.endedAt);
    json.raw(",\n");
  }
  json.raw("  \"id\" : ");
  appendId(json, session.id);
  json.raw(",\n  \"lines\" : [\n");
}

void appendSessionLine(JsonWriter& json, const Line& line) {
  json.raw("    {\n      \"id\" : ");
  appendId(json, line.id);
  if (line.input == AudioInput::computer) {
    json.raw(",\n      \"input\" : \"computer\",\n");
  } else if (line.input == AudioInput::microphone) {
    json.raw(",\n      \"input\" : \"microphone\",\n");
  } else {
    json.raw(",\n");
  }
  appendOptional(json, "      \"legacyTimestamp\" : ", line.legacyTimestamp);
  appendOptional(json, "      \"legacyTranslation\" : ", line.legacyTranslation);
  appendOptional(json, "      \"sourceLanguage\" : ", line.sourceLanguage);
  json.raw("      \"text\" : ");
  json.string(line.text);
  if (line.time) {
    json.raw(",\n      \"time\" : ");
    appendTime(json, *line.time);
  }
  json.raw(",\n      \"translations\" : {\n");
  appendTranslations(json, line.translations);
  json.raw("\n      }\n    }");
}

void appendSessionTail(JsonWriter& json, const CaptionSession& session) {
  json.raw("\n  ],\n  \"schemaVersion\" : ");
  json.raw(std::to_string(session.schemaVersion));
  json.raw(",\n  \"startedAt\" : ");
  appendTime(json, session.startedAt);
  json.raw(",\n  \"title\" : ");
  json.string(session.title);
  json.raw("\n}");
}

}  // namespace velun
