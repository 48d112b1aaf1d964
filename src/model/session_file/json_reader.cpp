// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/json_reader.h"

#include "model/session_file/session_limits.h"

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

void JsonReader::fail(Kind kind, std::size_t position, const std::string& key) const {
  const auto end = text_.begin() + static_cast<std::ptrdiff_t>(std::min(position, text_.size()));
  const auto newlines = std::count(text_.begin(), end, '\n');
  throw SessionProblem{kind, static_cast<std::size_t>(newlines) + 1, key};
}

void JsonReader::skipSpaces() {
  while (position_ < text_.size()) {
    const char c = text_[position_];
    if (c != ' ' && c != '\n' && c != '\r' && c != '\t') return;
    ++position_;
  }
}

char JsonReader::peek() {
  skipSpaces();
  return position_ < text_.size() ? text_[position_] : '\0';
}

bool JsonReader::skip(char sign) {
  if (peek() != sign || position_ == text_.size()) return false;
  ++position_;
  return true;
}

void JsonReader::expect(char sign) {
  if (skip(sign)) return;
  fail(position_ == text_.size() ? Kind::endsEarly : Kind::notJson);
}

bool JsonReader::skipNull() {
  if (peek() != 'n') return false;
  skipWord("null");
  return true;
}

void JsonReader::expectEnd() {
  skipSpaces();
  if (position_ != text_.size()) fail(Kind::notJson);
}

void JsonReader::skipWord(std::string_view word) {
  if (text_.substr(position_, word.size()) != word) fail(Kind::notJson);
  position_ += word.size();
}

void JsonReader::skipDigits() {
  if (position_ == text_.size() || !isDigit(text_[position_])) fail(Kind::notJson);
  while (position_ < text_.size() && isDigit(text_[position_])) ++position_;
}

std::string_view JsonReader::number() {
  skipSpaces();
  const std::size_t start = position_;
  const auto isHere = [this](char c) {
    return position_ < text_.size() && text_[position_] == c;
  };
  if (isHere('-')) ++position_;
  if (isHere('0')) {
    ++position_;
  } else {
    skipDigits();
  }
  if (isHere('.')) {
    ++position_;
    skipDigits();
  }
  if (isHere('e') || isHere('E')) {
    ++position_;
    if (isHere('+') || isHere('-')) ++position_;
    skipDigits();
  }
  return text_.substr(start, position_ - start);
}

std::string JsonReader::string() {
  expect('"');
  std::string result;
  while (position_ < text_.size()) {
    const char c = text_[position_];
    if (c == '"') {
      ++position_;
      return result;
    }
    if (static_cast<unsigned char>(c) < 0x20) fail(Kind::badCharacter);
    ++position_;
    if (c == '\\') {
      appendEscape(result);
    } else {
      result += c;
    }
  }
  fail(Kind::endsEarly);
}

void JsonReader::appendEscape(std::string& result) {
  if (position_ == text_.size()) fail(Kind::endsEarly);
  static constexpr std::string_view kLetters = "\"\\/bfnrt";
  static constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
  const char letter = text_[position_++];
  if (letter != 'u') {
    const std::size_t which = kLetters.find(letter);
    if (which == std::string_view::npos) fail(Kind::notJson);
    result += kMeanings[which];
    return;
  }
  char32_t c = hexUnit();
  if (c >= 0xDC00 && c <= 0xDFFF) fail(Kind::badCharacter);
  if (c >= 0xD800 && c <= 0xDBFF) {
    if (text_.substr(position_, 2) != "\\u") fail(Kind::badCharacter);
    position_ += 2;
    const char32_t low = hexUnit();
    if (low < 0xDC00 || low > 0xDFFF) fail(Kind::badCharacter);
    c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
  }
  appendUtf8(result, c);
}

char32_t JsonReader::hexUnit() {
  if (text_.size() - position_ < 4) fail(Kind::endsEarly);
  char32_t value = 0;
  for (int i = 0; i < 4; ++i) {
    const char c = text_[position_++];
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
      fail(position_ == text_.size() ? Kind::endsEarly : Kind::notJson);
    default:
      number();
  }
}

void JsonReader::skipValue() {
  // What is open around the place, innermost last: '}' or ']'. No recursion, so that no file can
  // exhaust the stack.
  std::string open;
  const auto passKey = [this] {
    string();
    expect(':');
  };
  while (true) {
    const char c = peek();
    if (c == '{' || c == '[') {
      ++position_;
      if (open.size() == kDeepestNesting) fail(Kind::tooDeep);
      open += c == '{' ? '}' : ']';
      if (!skip(open.back())) {
        if (open.back() == '}') passKey();
        continue;  // to the first value inside
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
    if (open.back() == '}') passKey();
  }
}

}  // namespace velun
