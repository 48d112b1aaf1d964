// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/json_reader.h"

#include "model/session_file/session_file.h"

#include <algorithm>

namespace velun {

namespace {

using Kind = SessionProblem::Kind;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

void appendUtf8(std::string& text, char32_t c) {
  const auto tail = [c](int shift) {
    return static_cast<char>(0x80 | ((c >> shift) & 0x3F));
  };
  if (c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    text += {static_cast<char>(0xC0 | c >> 6), tail(0)};
  } else if (c < 0x10000) {
    text += {static_cast<char>(0xE0 | c >> 12), tail(6), tail(0)};
  } else {
    text += {static_cast<char>(0xF0 | c >> 18), tail(12), tail(6), tail(0)};
  }
}

}  // namespace

void JsonReader::fail(Kind kind, const char* position, std::string_view key) const {
  const auto newlines = std::count(start_, position, '\n');
  throw SessionProblem{kind, static_cast<std::size_t>(newlines) + 1, std::string(key)};
}

void JsonReader::failAtSign() const {
  fail(at_ == end_ ? Kind::endsEarly : Kind::notJson);
}

bool JsonReader::skipNull() {
  if (peek() != 'n') return false;
  skipWord("null");
  return true;
}

void JsonReader::expectEnd() {
  peek();
  if (at_ != end_) fail(Kind::notJson);
}

void JsonReader::skipWord(std::string_view word) {
  if (!std::string_view(at_, end_).starts_with(word)) fail(Kind::notJson);
  at_ += word.size();
}

void JsonReader::skipDigits() {
  if (at_ == end_ || !isDigit(*at_)) fail(Kind::notJson);
  while (at_ != end_ && isDigit(*at_)) ++at_;
}

std::string_view JsonReader::number() {
  peek();
  const char* const start = at_;
  const auto skipOneOf = [this](std::string_view characters) {
    if (at_ == end_ || characters.find(*at_) == std::string_view::npos) return false;
    ++at_;
    return true;
  };
  skipOneOf("-");
  if (!skipOneOf("0")) skipDigits();
  if (skipOneOf(".")) skipDigits();
  if (skipOneOf("eE")) {
    skipOneOf("+-");
    skipDigits();
  }
  return {start, at_};
}

std::string_view JsonReader::string() {
  expect('"');
  unescaped_.clear();
  while (at_ != end_) {
    const char c = *at_;
    if (static_cast<unsigned char>(c) < 0x20) fail(Kind::badCharacter);
    ++at_;
    if (c == '"') return unescaped_;
    if (c == '\\') {
      appendEscape();
    } else {
      unescaped_ += c;
    }
  }
  fail(Kind::endsEarly);
}

void JsonReader::appendEscape() {
  if (at_ == end_) fail(Kind::endsEarly);
  static constexpr std::string_view kLetters = "\"\\/bfnrt";
  static constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
  const char letter = *at_++;
  if (letter != 'u') {
    const std::size_t which = kLetters.find(letter);
    if (which == std::string_view::npos) fail(Kind::notJson);
    unescaped_ += kMeanings[which];
    return;
  }
  char32_t c = hexUnit();
  if (c >= 0xDC00 && c <= 0xDFFF) fail(Kind::badCharacter);
  if (c >= 0xD800 && c <= 0xDBFF) {
    if (!std::string_view(at_, end_).starts_with("\\u")) fail(Kind::badCharacter);
    at_ += 2;
    const char32_t low = hexUnit();
    if (low < 0xDC00 || low > 0xDFFF) fail(Kind::badCharacter);
    c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
  }
  appendUtf8(unescaped_, c);
}

char32_t JsonReader::hexUnit() {
  if (end_ - at_ < 4) fail(Kind::endsEarly);
  char32_t value = 0;
  for (int i = 0; i < 4; ++i) {
    const char c = *at_++;
    value <<= 4;
    if (isDigit(c)) {
      value += static_cast<char32_t>(c - '0');
    } else if ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F')) {
      value += static_cast<char32_t>((c | 0x20) - 'a' + 10);
    } else {
      fail(Kind::notJson);
    }
  }
  return value;
}

void JsonReader::skipScalar() {
  switch (peek()) {
    case '"':
      string();
      return;
    case 't':
      return skipWord("true");
    case 'f':
      return skipWord("false");
    case 'n':
      return skipWord("null");
    case '\0':
      failAtSign();
    default:
      number();
  }
}

void JsonReader::skipValue() {
  // The closing signs of the objects and lists around the position, innermost last. Without
  // recursion, so that no file can exhaust the stack.
  std::string open;
  const auto skipKey = [this] {
    string();
    expect(':');
  };
  while (true) {
    const char c = peek();
    if (c == '{' || c == '[') {
      ++at_;
      if (open.size() == kMaxNesting) fail(Kind::tooDeep);
      open += c == '{' ? '}' : ']';
      if (!skip(open.back())) {
        if (open.back() == '}') skipKey();
        continue;  // with the first value inside
      }
      open.pop_back();
    } else {
      skipScalar();
    }
    while (!open.empty() && !skip(',')) {
      expect(open.back());
      open.pop_back();
    }
    if (open.empty()) return;
    if (open.back() == '}') skipKey();
  }
}

}  // namespace velun
