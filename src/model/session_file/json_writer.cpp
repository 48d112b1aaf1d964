// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/json_writer.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace velun {

namespace {

/// For each ASCII character: 0 when it stands for itself, 'u' when it is written by its number,
/// else the letter of its short escape.
constexpr std::array<char, 128> makeEscapes() {
  std::array<char, 128> escapes{};
  for (std::size_t c = 0; c < 0x20; ++c) escapes[c] = 'u';
  escapes['\b'] = 'b';
  escapes['\f'] = 'f';
  escapes['\n'] = 'n';
  escapes['\r'] = 'r';
  escapes['\t'] = 't';
  escapes['"'] = '"';
  escapes['\\'] = '\\';
  return escapes;
}

constexpr std::array kEscapes = makeEscapes();

char* writeEscape(char* out, char16_t c) {
  *out++ = '\\';
  *out++ = kEscapes[c];
  if (kEscapes[c] != 'u') return out;
  *out++ = '0';
  *out++ = '0';
  *out++ = c < 0x10 ? '0' : '1';
  *out++ = "0123456789abcdef"[c & 0xF];
  return out;
}

/// The UTF-8 of a code point above U+007F.
char* writeUtf8(char* out, char32_t c) {
  const auto tail = [c](int shift) {
    return static_cast<char>(0x80 | ((c >> shift) & 0x3F));
  };
  if (c < 0x800) {
    *out++ = static_cast<char>(0xC0 | c >> 6);
  } else if (c < 0x10000) {
    *out++ = static_cast<char>(0xE0 | c >> 12);
    *out++ = tail(6);
  } else {
    *out++ = static_cast<char>(0xF0 | c >> 18);
    *out++ = tail(12);
    *out++ = tail(6);
  }
  *out++ = tail(0);
  return out;
}

}  // namespace

char* JsonWriter::room(qsizetype count) {
  if (!start_ || size_ + count > bytes_.size()) {
    const qsizetype needed = size_ + count;
    const qsizetype held = bytes_.capacity();
    bytes_.resize(needed <= held ? held : std::max(needed, size_ + size_ / 2 + 256));
    start_ = bytes_.data();
  }
  return start_ + size_;
}

void JsonWriter::raw(std::string_view characters) {
  char* out = room(static_cast<qsizetype>(characters.size()));
  std::memcpy(out, characters.data(), characters.size());
  wrote(out + characters.size());
}

void JsonWriter::string(QStringView text) {
  char* out = room(6 * text.size() + 2);  // the longest form of one unit is \u001f
  *out++ = '"';
  const char16_t* unit = text.utf16();
  const char16_t* const end = unit + text.size();
  while (unit < end) {
    const char16_t c = *unit++;
    if (c < 0x80) {
      if (kEscapes[c] == 0) {
        *out++ = static_cast<char>(c);
      } else {
        out = writeEscape(out, c);
      }
    } else if (!QChar::isSurrogate(c)) {
      out = writeUtf8(out, c);
    } else if (QChar::isHighSurrogate(c) && unit < end && QChar::isLowSurrogate(*unit)) {
      out = writeUtf8(out, QChar::surrogateToUcs4(c, *unit++));
    } else {
      out = writeUtf8(out, QChar::ReplacementCharacter);
    }
  }
  *out++ = '"';
  wrote(out);
}

}  // namespace velun
