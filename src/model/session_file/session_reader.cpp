// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_reader.h"

#include "model/session_file/json_reader.h"
#include "model/session_file/session_fields.h"
#include "model/session_file/session_limits.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <simdjson.h>

namespace velun {

namespace {

using Kind = SessionProblem::Kind;

class CarefulReader {
 public:
  explicit CarefulReader(std::string_view text) : cursor_(text) {}

  CaptionSession document() {
    CaptionSession session = readSession();
    cursor_.expectEnd();
    return session;
  }

 private:
  /// Calls `member` with every key of the object that begins here, standing at its value.
  template <class Member>
  void object(const std::string& name, Member member) {
    if (cursor_.peek() != '{') refuse(Kind::notAnObject, name);
    cursor_.expect('{');
    if (cursor_.skip('}')) return;
    do {
      const std::string key = cursor_.string();
      cursor_.expect(':');
      member(key);
    } while (cursor_.skip(','));
    cursor_.expect('}');
  }

  CaptionSession readSession() {
    cursor_.peek();
    const std::size_t start = cursor_.position();
    std::optional<int> version;
    std::optional<QUuid> id;
    std::optional<Instant> startedAt;
    std::optional<Instant> endedAt;
    std::optional<QString> title;
    std::optional<std::vector<Line>> lines;
    object({}, [&](const std::string& key) {
      if (key == "schemaVersion") {
        version = readInteger(key);
      } else if (key == "id") {
        id = readId(key);
      } else if (key == "startedAt") {
        startedAt = readTime(key);
      } else if (key == "endedAt") {
        endedAt = cursor_.skipNull() ? std::nullopt : std::optional(readTime(key));
      } else if (key == "title") {
        title = readText(key);
      } else if (key == "lines") {
        lines = readLines(key);
      } else {
        cursor_.skipValue();
      }
    });
    return CaptionSession{
        required(version, "schemaVersion", start), required(id, "id", start),
        required(startedAt, "startedAt", start),   endedAt,
        required(title, "title", start),           required(lines, "lines", start)};
  }

  std::vector<Line> readLines(const std::string& key) {
    if (cursor_.peek() != '[') refuse(Kind::notAList, key);
    cursor_.expect('[');
    std::vector<Line> lines;
    if (cursor_.skip(']')) return lines;
    do {
      countEntry();
      lines.push_back(readLine());
    } while (cursor_.skip(','));
    cursor_.expect(']');
    return lines;
  }

  Line readLine() {
    cursor_.peek();
    const std::size_t start = cursor_.position();
    std::optional<QUuid> id;
    std::optional<Instant> time;
    std::optional<QString> text;
    std::optional<QString> sourceLanguage;
    std::optional<AudioInput> input;
    std::optional<Translations> translations;
    std::optional<QString> legacyTimestamp;
    std::optional<QString> legacyTranslation;
    object("lines", [&](const std::string& key) {
      if (key == "id") {
        id = readId(key);
      } else if (key == "time") {
        time = cursor_.skipNull() ? std::nullopt : std::optional(readTime(key));
      } else if (key == "text") {
        text = readText(key);
      } else if (key == "sourceLanguage") {
        sourceLanguage = readOptionalText(key);
      } else if (key == "input") {
        input = cursor_.skipNull() ? std::nullopt : std::optional(readInput(key));
      } else if (key == "translations") {
        translations = readTranslations(key);
      } else if (key == "legacyTimestamp") {
        legacyTimestamp = readOptionalText(key);
      } else if (key == "legacyTranslation") {
        legacyTranslation = readOptionalText(key);
      } else {
        cursor_.skipValue();
      }
    });
    return Line{required(id, "id", start),
                time,
                required(text, "text", start),
                std::move(sourceLanguage),
                input,
                required(translations, "translations", start),
                std::move(legacyTimestamp),
                std::move(legacyTranslation)};
  }

  Translations readTranslations(const std::string& key) {
    Translations translations;
    object(key, [&](const std::string& language) {
      countEntry();
      translations.insert_or_assign(QString::fromStdString(language), readText(language));
    });
    return translations;
  }

  std::string readString(const std::string& key) {
    if (cursor_.peek() != '"') refuse(Kind::notAText, key);
    return cursor_.string();
  }

  QString readText(const std::string& key) { return QString::fromStdString(readString(key)); }

  std::optional<QString> readOptionalText(const std::string& key) {
    if (cursor_.skipNull()) return std::nullopt;
    return readText(key);
  }

  QUuid readId(const std::string& key) {
    const std::string text = readString(key);
    const std::optional<QUuid> id = idFromText(text);
    if (!id) cursor_.fail(Kind::notAnId, cursor_.position(), key);
    return *id;
  }

  Instant readTime(const std::string& key) {
    const std::string text = readString(key);
    const std::optional<Instant> time = timeFromText(text);
    if (!time) cursor_.fail(Kind::notATime, cursor_.position(), key);
    return *time;
  }

  AudioInput readInput(const std::string& key) {
    const std::string text = readString(key);
    const std::optional<AudioInput> input = audioInputFromRawValue(QString::fromStdString(text));
    if (!input) cursor_.fail(Kind::notAnInput, cursor_.position(), key);
    return *input;
  }

  int readInteger(const std::string& key) {
    const char first = cursor_.peek();
    if (first != '-' && (first < '0' || first > '9')) refuse(Kind::notAnInteger, key);
    const std::string_view digits = cursor_.number();
    if (digits.find_first_of(".eE") != std::string_view::npos) {
      cursor_.fail(Kind::notAnInteger, cursor_.position(), key);
    }
    int number = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number);
    if (error == std::errc()) return number;
    return digits.front() == '-' ? std::numeric_limits<int>::min()
                                 : std::numeric_limits<int>::max();
  }

  template <class T>
  T required(std::optional<T>& value, const std::string& key, std::size_t owner) const {
    if (!value) cursor_.fail(Kind::missing, owner, key);
    return std::move(*value);
  }

  void countEntry() {
    if (++entries_ > kMostLinesAndTranslations) cursor_.fail(Kind::tooManyLines);
  }

  /// A value of another type stands here; or nothing that JSON knows, which is said by passing it.
  [[noreturn]] void refuse(Kind kind, const std::string& key) {
    const std::size_t start = cursor_.position();
    cursor_.skipValue();
    cursor_.fail(kind, start, key);
  }

  JsonReader cursor_;
  std::size_t entries_ = 0;
};

/// A newline is never part of another character, so the lines can be looked at one by one.
[[noreturn]] void failAtInvalidUtf8(std::string_view text) {
  std::size_t line = 1;
  while (true) {
    const std::size_t length = std::min(text.find('\n'), text.size());
    if (!simdjson::validate_utf8(text.data(), length)) {
      throw SessionProblem{Kind::notUtf8, line};
    }
    text.remove_prefix(std::min(length + 1, text.size()));
    ++line;
  }
}

}  // namespace

CaptionSession readSessionCarefully(const QByteArray& bytes) {
  static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  if (bytes.size() > kLargestSessionFile) throw SessionProblem{Kind::tooLarge};
  if (!simdjson::validate_utf8(text.data(), text.size())) failAtInvalidUtf8(text);
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  if (text.find_first_not_of(" \n\r\t") == std::string_view::npos) {
    throw SessionProblem{Kind::empty};
  }
  return CarefulReader(text).document();
}

}  // namespace velun
