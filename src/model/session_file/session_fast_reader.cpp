// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_fast_reader.h"

#include "model/session_file/session_fields.h"
#include "model/session_file/session_limits.h"

#include <algorithm>
#include <limits>
#include <simdjson.h>

namespace velun {

namespace {

static_assert(kFastReaderPadding >= simdjson::SIMDJSON_PADDING);

namespace dom = simdjson::dom;

/// Above this the parser's own tables could take gigabytes on a file made for that.
constexpr qsizetype kLargestFastFile = qsizetype{32} << 20;

QString toText(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Reads one document. Each operation gives false for what it does not understand.
class FastReader {
 public:
  bool session(const dom::element& document, CaptionSession& session) {
    dom::object members;
    if (document.get(members) != simdjson::SUCCESS) return false;
    std::optional<QUuid> id;
    std::optional<Instant> startedAt;
    std::optional<std::int64_t> version;
    bool hasTitle = false;
    bool hasLines = false;
    for (const auto [key, value] : members) {
      bool good = true;
      if (key == "id") {
        good = read(value, id, idFromText) && id;
      } else if (key == "startedAt") {
        good = read(value, startedAt, timeFromText) && startedAt;
      } else if (key == "endedAt") {
        good = read(value, session.endedAt, timeFromText);
      } else if (key == "title") {
        std::string_view title;
        good = hasTitle = value.get(title) == simdjson::SUCCESS;
        session.title = toText(title);
      } else if (key == "schemaVersion") {
        std::int64_t number = 0;
        good = value.get(number) == simdjson::SUCCESS;
        version = number;
      } else if (key == "lines") {
        good = hasLines = lines(value, session.lines);
      }
      if (!good) return false;
    }
    if (!id || !startedAt || !version || !hasTitle || !hasLines) return false;
    session.id = *id;
    session.startedAt = *startedAt;
    session.schemaVersion = static_cast<int>(std::clamp<std::int64_t>(
        *version, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    return true;
  }

 private:
  /// A text that `convert` understands, or null for none.
  template <class T, class Convert>
  static bool read(const dom::element& value, std::optional<T>& result, Convert convert) {
    result.reset();
    if (value.is_null()) return true;
    std::string_view text;
    if (value.get(text) != simdjson::SUCCESS) return false;
    result = convert(text);
    return result.has_value();
  }

  static std::optional<QString> plain(std::string_view text) { return toText(text); }

  static std::optional<AudioInput> input(std::string_view text) {
    if (text == "computer") return AudioInput::computer;
    if (text == "microphone") return AudioInput::microphone;
    return std::nullopt;
  }

  bool lines(const dom::element& value, std::vector<Line>& lines) {
    dom::array items;
    if (value.get(items) != simdjson::SUCCESS) return false;
    lines.clear();
    // A hint only: it stops counting at 16 million.
    const std::size_t expected = items.size();
    if (expected > kMostLinesAndTranslations) return false;
    lines.reserve(expected);
    for (const dom::element& item : items) {
      if (++entries_ > kMostLinesAndTranslations || !line(item, lines)) return false;
    }
    return true;
  }

  bool line(const dom::element& value, std::vector<Line>& lines) {
    dom::object members;
    if (value.get(members) != simdjson::SUCCESS) return false;
    std::optional<QUuid> id;
    std::optional<Instant> time;
    std::optional<QString> text;
    std::optional<QString> source;
    std::optional<AudioInput> heardOn;
    std::optional<Translations> translated;
    std::optional<QString> legacyTimestamp;
    std::optional<QString> legacyTranslation;
    for (const auto [key, member] : members) {
      bool good = true;
      if (key == "id") {
        good = read(member, id, idFromText) && id;
      } else if (key == "text") {
        good = read(member, text, plain) && text;
      } else if (key == "time") {
        good = read(member, time, timeFromText);
      } else if (key == "translations") {
        good = translations(member, translated.emplace());
      } else if (key == "sourceLanguage") {
        good = read(member, source, [this](std::string_view name) { return sourceName_.of(name); });
      } else if (key == "input") {
        good = read(member, heardOn, input);
      } else if (key == "legacyTimestamp") {
        good = read(member, legacyTimestamp, plain);
      } else if (key == "legacyTranslation") {
        good = read(member, legacyTranslation, plain);
      }
      if (!good) return false;
    }
    if (!id || !text || !translated) return false;
    lines.push_back(Line{*id, time, std::move(*text), std::move(source), heardOn,
                         std::move(*translated), std::move(legacyTimestamp),
                         std::move(legacyTranslation)});
    return true;
  }

  bool translations(const dom::element& value, Translations& translations) {
    dom::object members;
    if (value.get(members) != simdjson::SUCCESS) return false;
    for (const auto [language, member] : members) {
      std::string_view text;
      if (member.get(text) != simdjson::SUCCESS) return false;
      if (++entries_ > kMostLinesAndTranslations) return false;
      translations.insert_or_assign(targetName_.of(language), toText(text));
    }
    return true;
  }

  /// Languages repeat from line to line: their text is shared, not made again.
  class SharedName {
   public:
    QString of(std::string_view utf8) {
      if (utf8 != utf8_) {
        utf8_ = utf8;
        text_ = toText(utf8);
      }
      return text_;
    }

   private:
    std::string utf8_;
    QString text_ = QStringLiteral("");
  };

  std::size_t entries_ = 0;
  SharedName sourceName_;
  SharedName targetName_;
};

}  // namespace

std::optional<CaptionSession> readSessionFast(const QByteArray& bytes) {
  if (bytes.size() > kLargestFastFile) return std::nullopt;
  const bool isPadded = bytes.capacity() - bytes.size() >= kFastReaderPadding;
  dom::parser parser;
  dom::element document;
  if (parser.parse(bytes.constData(), static_cast<std::size_t>(bytes.size()), !isPadded)
          .get(document) != simdjson::SUCCESS) {
    return std::nullopt;
  }
  // Named members: the defaults of the others would be made for nothing.
  CaptionSession session{
      .id = QUuid(), .startedAt = Instant(), .endedAt = {}, .title = QString(), .lines = {}};
  if (!FastReader().session(document, session)) return std::nullopt;
  return session;
}

}  // namespace velun
