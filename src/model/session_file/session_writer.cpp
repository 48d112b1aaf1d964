// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_writer.h"

#include "model/session_file/json_writer.h"
#include "model/session_file/session_fields.h"
#include "model/session_file/text_forms.h"

#include <string>

namespace velun {

namespace {

void append(JsonWriter& json, int number) {
  json.raw(std::to_string(number));
}

void append(JsonWriter& json, const QString& text) {
  json.string(text);
}

void append(JsonWriter& json, const QUuid& id) {
  char* out = json.room(kIdLength + 2);
  *out++ = '"';
  out = writeId(out, id);
  *out++ = '"';
  json.wrote(out);
}

void append(JsonWriter& json, Instant time) {
  char* out = json.room(kTimeLength + 2);
  *out++ = '"';
  out = writeTime(out, time);
  *out++ = '"';
  json.wrote(out);
}

/// In seconds: "12.340".
void append(JsonWriter& json, std::chrono::milliseconds time) {
  // Inserting the point into one text makes GCC 12 warn of an overflow that cannot happen.
  const std::string fraction = std::to_string(1000 + time.count() % 1000);
  json.raw(std::to_string(time.count() / 1000));
  json.raw(".");
  json.raw(std::string_view(fraction).substr(1));
}

void append(JsonWriter& json, AudioInput input) {
  json.raw(input == AudioInput::microphone ? "\"microphone\"" : "\"computer\"");
}

void append(JsonWriter& json, const Translations& translations) {
  json.raw("{\n");
  bool isFirst = true;
  for (const auto& [language, text] : translations) {
    json.raw(isFirst ? "        " : ",\n        ");
    json.string(language);
    json.raw(" : ");
    json.string(text);
    isFirst = false;
  }
  json.raw("\n      }");
}

template <class T>
bool isAbsent(const T&) {
  return false;
}
template <class T>
bool isAbsent(const std::optional<T>& value) {
  return !value;
}

template <class T>
void append(JsonWriter& json, const std::optional<T>& value) {
  append(json, *value);
}

/// Writes the members of a table whose keys `isWanted` accepts, with `indentation` before each.
template <const auto& fields, class Object, class IsWanted>
void appendMembers(JsonWriter& json, const Object& object, std::string_view indentation,
                   IsWanted isWanted) {
  bool isFirst = true;
  forEachInWritingOrder<fields>([&](const auto& field) {
    const auto& value = object.*field.member;
    // The list of lines is written line by line.
    if constexpr (!std::is_same_v<decltype(value), const std::vector<Line>&>) {
      if (!isWanted(field.key) || isAbsent(value)) return;
      if (!isFirst) json.raw(",\n");
      isFirst = false;
      json.key(indentation, field.key);
      append(json, value);
    }
  });
}

}  // namespace

void appendSessionHead(JsonWriter& json, const CaptionSession& session) {
  json.raw("{\n");
  appendMembers<kSessionFields>(json, session, "  ",
                                [](std::string_view key) { return key < "lines"; });
  json.raw(",\n  \"lines\" : [\n");
}

void appendSessionLine(JsonWriter& json, const Line& line) {
  json.raw("    {\n");
  appendMembers<kLineFields>(json, line, "      ", [](std::string_view) { return true; });
  json.raw("\n    }");
}

void appendSessionTail(JsonWriter& json, const CaptionSession& session) {
  json.raw("\n  ],\n");
  appendMembers<kSessionFields>(json, session, "  ",
                                [](std::string_view key) { return key > "lines"; });
  json.raw("\n}");
}

}  // namespace velun
