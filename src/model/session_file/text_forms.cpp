// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/text_forms.h"

#include <algorithm>
#include <array>

namespace velun {

namespace {

using namespace std::chrono;

constexpr auto kMinTime = sys_seconds(sys_days(year(0) / 1 / 1));
constexpr auto kMaxTime = sys_seconds(sys_days(year(9999) / 12 / 31)) + hours(24) - seconds(1);

char* writeHex(char* out, quint64 value, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    *out++ = "0123456789ABCDEF"[(value >> shift) & 0xF];
  }
  return out;
}

template <int digits>
char* writeDecimal(char* out, unsigned value) {
  for (int i = digits - 1; i >= 0; --i) {
    out[i] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  return out + digits;
}

constexpr quint8 kNoDigit = 0xFF;

constexpr std::array<quint8, 256> makeHexDigits() {
  std::array<quint8, 256> values{};
  values.fill(kNoDigit);
  for (int i = 0; i < 10; ++i) values['0' + i] = static_cast<quint8>(i);
  for (int i = 0; i < 6; ++i) {
    values['a' + i] = values['A' + i] = static_cast<quint8>(10 + i);
  }
  return values;
}

constexpr std::array kHexDigits = makeHexDigits();

/// The value of `count` decimal digits, or -1 if there is any other character.
int decimalAt(std::string_view text, std::size_t at, std::size_t count) {
  int value = 0;
  for (const char c : text.substr(at, count)) {
    if (c < '0' || c > '9') return -1;
    value = value * 10 + (c - '0');
  }
  return value;
}

}  // namespace

char* writeId(char* out, const QUuid& id) {
  out = writeHex(out, id.data1, 8);
  *out++ = '-';
  out = writeHex(out, id.data2, 4);
  *out++ = '-';
  out = writeHex(out, id.data3, 4);
  *out++ = '-';
  out = writeHex(writeHex(out, id.data4[0], 2), id.data4[1], 2);
  *out++ = '-';
  for (int i = 2; i < 8; ++i) out = writeHex(out, id.data4[i], 2);
  return out;
}

char* writeTime(char* out, Instant time) {
  const sys_seconds second = std::clamp(floor<seconds>(time), kMinTime, kMaxTime);
  const sys_days day = floor<days>(second);
  const year_month_day date(day);
  const auto ofDay = static_cast<unsigned>((second - day).count());
  out = writeDecimal<4>(out, static_cast<unsigned>(static_cast<int>(date.year())));
  *out++ = '-';
  out = writeDecimal<2>(out, static_cast<unsigned>(date.month()));
  *out++ = '-';
  out = writeDecimal<2>(out, static_cast<unsigned>(date.day()));
  *out++ = 'T';
  out = writeDecimal<2>(out, ofDay / 3600);
  *out++ = ':';
  out = writeDecimal<2>(out, ofDay / 60 % 60);
  *out++ = ':';
  out = writeDecimal<2>(out, ofDay % 60);
  *out++ = 'Z';
  return out;
}

std::optional<QUuid> parseId(std::string_view text) {
  if (text.size() != kIdLength) return std::nullopt;
  std::array<quint8, 16> bytes{};
  std::size_t filled = 0;
  for (std::size_t i = 0; i < kIdLength;) {
    if (i == 8 || i == 13 || i == 18 || i == 23) {
      if (text[i++] != '-') return std::nullopt;
      continue;
    }
    const int high = kHexDigits[static_cast<unsigned char>(text[i])];
    const int low = kHexDigits[static_cast<unsigned char>(text[i + 1])];
    if ((high | low) == kNoDigit) return std::nullopt;
    bytes[filled++] = static_cast<quint8>(high << 4 | low);
    i += 2;
  }
  const auto number = [&bytes](std::size_t at) {
    return static_cast<ushort>(bytes[at] << 8 | bytes[at + 1]);
  };
  return QUuid(uint{number(0)} << 16 | number(2), number(4), number(6), bytes[8], bytes[9],
               bytes[10], bytes[11], bytes[12], bytes[13], bytes[14], bytes[15]);
}

std::optional<Instant> parseTime(std::string_view text) {
  if (text.size() != kTimeLength || text[4] != '-' || text[7] != '-' || text[10] != 'T' ||
      text[13] != ':' || text[16] != ':' || text[19] != 'Z') {
    return std::nullopt;
  }
  const int years = decimalAt(text, 0, 4);
  const int months = decimalAt(text, 5, 2);
  const int dayOfMonth = decimalAt(text, 8, 2);
  const int hour = decimalAt(text, 11, 2);
  const int minute = decimalAt(text, 14, 2);
  const int second = decimalAt(text, 17, 2);
  if ((years | months | dayOfMonth | hour | minute | second) < 0) return std::nullopt;
  const year_month_day date = year(years) / months / dayOfMonth;
  if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return Instant(sys_days(date)) + hours(hour) + minutes(minute) + seconds(second);
}

}  // namespace velun
