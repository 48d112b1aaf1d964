// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_reader.h"

#include "model/session_file/session_fields.h"
#include "model/session_file/session_file.h"
#include "model/session_file/session_values.h"
#include "model/session_file/text_forms.h"

#include <algorithm>
#include <cmath>
#include <QSet>
#include <vector>

namespace velun {

namespace {

using Kind = SessionProblem::Kind;

static_assert(kSessionFilePadding >= simdjson::SIMDJSON_PADDING);

/// Above this size simdjson's tables could take gigabytes for a file made for that purpose.
constexpr qsizetype kMaxTreeFileSize = qsizetype{32} << 20;

QString toText(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Languages repeat from line to line: their text is shared instead of copied.
class SharedText {
 public:
  const QString& of(std::string_view utf8) {
    if (utf8 != utf8_) {
      utf8_ = utf8;
      text_ = toText(utf8);
    }
    return text_;
  }

  const std::string& utf8() const { return utf8_; }

 private:
  std::string utf8_;
  QString text_ = QStringLiteral("");
};

template <class T>
constexpr bool isOptional(const T&) {
  return false;
}
template <class T>
constexpr bool isOptional(const std::optional<T>&) {
  return true;
}

/// Reads one document, given as a `TreeValue` or a `TextValue`.
template <class Value>
class SessionReader {
 public:
  CaptionSession read(Value document) {
    // Without the defaults: a random identifier and the title in the interface language.
    CaptionSession session{
        .id = QUuid(), .startedAt = Instant(), .endedAt = {}, .title = {}, .lines = {}};
    readObject<kSessionFields>(document, session);
    return session;
  }

 private:
  template <const auto& fields, class Object>
  void readObject(Value value, Object& object) {
    constexpr std::size_t count = std::tuple_size_v<std::remove_cvref_t<decltype(fields)>>;
    std::array<bool, count> isPresent{};
    const auto start = value.position();
    value.forEachMember([&](std::string_view key, Value member) {
      std::size_t index = 0;
      const auto readIfNamed = [&](const auto& field) {
        const std::size_t own = index++;
        if (key != field.key) return false;
        isPresent[own] = true;
        read(member.named(field.key), object.*field.member);
        return true;
      };
      const bool isKnown =
          std::apply([&](const auto&... field) { return (readIfNamed(field) || ...); }, fields);
      if (!isKnown) member.skip();
    });
    std::size_t index = 0;
    const auto check = [&](const auto& field) {
      if (isPresent[index++] || isOptional(object.*field.member)) return;
      value.fail(Kind::missing, start, field.key);
    };
    std::apply([&](const auto&... field) { (check(field), ...); }, fields);
  }

  template <class T>
  void read(Value value, std::optional<T>& result) {
    if (value.skipNull()) {
      result.reset();
    } else {
      read(value, result.emplace());
    }
  }

  void read(Value value, int& number) { number = value.integer(); }

  void read(Value value, std::chrono::milliseconds& time) {
    const double seconds = value.number();
    if (!(seconds >= 0 && seconds <= kMaxLineTime.count())) value.fail(Kind::notADuration);
    time = std::chrono::milliseconds(std::llround(seconds * 1000));
  }

  void read(Value value, QString& text) {
    constexpr std::size_t kMaxSharedLength = 15;
    const std::string_view utf8 = value.string();
    if (utf8.size() <= kMaxSharedLength) {
      text = shortText_.of(utf8);
    } else {
      text = toText(utf8);
    }
  }

  void read(Value value, QUuid& id) { parse(value, id, parseId, Kind::notAnId); }

  void read(Value value, Instant& time) { parse(value, time, parseTime, Kind::notATime); }

  void read(Value value, AudioInput& input) {
    const auto parseInput = [](std::string_view text) -> std::optional<AudioInput> {
      if (text == "computer") return AudioInput::computer;
      if (text == "microphone") return AudioInput::microphone;
      return std::nullopt;
    };
    parse(value, input, parseInput, Kind::notAnInput);
  }

  void read(Value value, Translations& translations) {
    translations.clear();
    value.forEachMember([&](std::string_view key, Value member) {
      const QString& language = language_.of(key);
      countEntry(member);
      countLanguage(member, language);
      translations.insert_or_assign(language, toText(member.named(language_.utf8()).string()));
    });
  }

  void read(Value value, std::vector<Line>& lines) {
    lines.clear();
    const auto reserve = [&](std::size_t count) {
      lines.reserve(std::min(count, kMaxLinesAndTranslations));
    };
    value.forEachItem(reserve, [&](Value item) {
      countEntry(item);
      lines.push_back(blankLine_);
      readObject<kLineFields>(item, lines.back());
    });
  }

  template <class T, class Parse>
  void parse(Value value, T& result, Parse parseText, Kind problem) {
    const std::optional<T> parsed = parseText(value.string());
    if (!parsed) value.fail(problem);
    result = *parsed;
  }

  void countEntry(Value& value) {
    if (++entries_ > kMaxLinesAndTranslations) value.fail(Kind::tooManyLines);
  }

  /// Most sessions have one or two, which are found without hashing.
  void countLanguage(Value& value, const QString& language) {
    constexpr std::size_t kMaxFewLanguages = 4;
    if (std::find(fewLanguages_.begin(), fewLanguages_.end(), language) != fewLanguages_.end()) {
      return;
    }
    if (fewLanguages_.size() < kMaxFewLanguages) return fewLanguages_.push_back(language);
    moreLanguages_.insert(language);
    const auto count = static_cast<qsizetype>(fewLanguages_.size()) + moreLanguages_.size();
    if (count > kMaxTranslationLanguages) value.fail(Kind::tooManyLanguages);
  }

  /// Copied for each line: a new `Line` would draw a random identifier only to lose it.
  const Line blankLine_{};
  std::size_t entries_ = 0;
  std::vector<QString> fewLanguages_;
  QSet<QString> moreLanguages_;
  SharedText shortText_;
  SharedText language_;
};

/// A newline byte is never part of another character, so each line can be checked by itself.
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

std::optional<CaptionSession> readSessionTree(const QByteArray& bytes) {
  if (bytes.size() > kMaxTreeFileSize) return std::nullopt;
  const bool isPadded = bytes.capacity() - bytes.size() >= kSessionFilePadding;
  simdjson::dom::parser parser;
  simdjson::dom::element document;
  if (parser.parse(bytes.constData(), static_cast<std::size_t>(bytes.size()), !isPadded)
          .get(document) != simdjson::SUCCESS) {
    return std::nullopt;
  }
  try {
    return SessionReader<TreeValue>().read(TreeValue(document));
  } catch (const TreeValue::UnexpectedValue&) {
    return std::nullopt;
  }
}

CaptionSession readSessionText(const QByteArray& bytes) {
  static constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  if (bytes.size() > kMaxSessionFileSize) throw SessionProblem{Kind::tooLarge};
  if (!simdjson::validate_utf8(text.data(), text.size())) failAtInvalidUtf8(text);
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  if (text.find_first_not_of(" \n\r\t") == std::string_view::npos) {
    throw SessionProblem{Kind::empty};
  }
  JsonReader json(text);
  CaptionSession session = SessionReader<TextValue>().read(TextValue(json));
  json.expectEnd();
  return session;
}

}  // namespace velun
