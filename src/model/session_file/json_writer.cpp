// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/json_writer.h"

#include <algorithm>
#include <array>

namespace velun {

namespace {

/// For each ASCII character: 0 if it needs no escape, 'u' if it is escaped as \u00XX, else the
/// letter of its two-character escape.
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

/// Writes a code point above U+007F as UTF-8.
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

void JsonWriter::grow(qsizetype needed) {
  const qsizetype capacity = bytes_.capacity();
  bytes_.resize(needed <= capacity ? capacity : std::max(needed, size_ + size_ / 2 + 256));
  start_ = bytes_.data();
}

void JsonWriter::string(QStringView text) {
  char* out = room(6 * text.size() + 2);  // the longest form of one UTF-16 unit is \u001f
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
