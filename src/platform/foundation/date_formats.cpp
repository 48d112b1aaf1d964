// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/date_formats.h"

#include <ctime>
#include <map>
#include <memory>
#include <QDateTime>
#include <stdexcept>
#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace velun {

namespace {

enum class Style { timeOfDay, longDateAndTime, monthAndYear };

std::unique_ptr<icu::DateFormat> makeFormat(Style style, const icu::Locale& locale) {
  using icu::DateFormat;
  if (style == Style::timeOfDay) {
    return std::unique_ptr<DateFormat>(DateFormat::createTimeInstance(DateFormat::kMedium, locale));
  }
  if (style == Style::longDateAndTime) {
    return std::unique_ptr<DateFormat>(
        DateFormat::createDateTimeInstance(DateFormat::kLong, DateFormat::kMedium, locale));
  }
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<DateFormat> format(
      DateFormat::createInstanceForSkeleton(icu::UnicodeString("yMMMM"), locale, status));
  if (U_FAILURE(status)) throw std::runtime_error(u_errorName(status));
  return format;
}

/// The offset of local time from UTC at `instant`. Read again for every text, because ICU keeps the
/// time zone that it found first, and the user may travel while the program runs.
std::chrono::seconds offsetFromUtc(Instant instant) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(instant).time_since_epoch();
  const std::time_t time = seconds.count();
  std::tm local{};
  tzset();
  localtime_r(&time, &local);
  return std::chrono::seconds(local.tm_gmtoff);
}

QString formatted(Style style, Instant instant, const QString& locale) {
  // Creating a format takes a hundred times as long as using it.
  thread_local std::map<std::pair<Style, QString>, std::unique_ptr<icu::DateFormat>> formats;
  std::unique_ptr<icu::DateFormat>& format = formats[{style, locale}];
  if (!format) {
    format = makeFormat(style, icu::Locale(locale.toUtf8().constData()));
    format->setTimeZone(*icu::TimeZone::getGMT());
  }
  const Instant local = instant + offsetFromUtc(instant);
  icu::UnicodeString text;
  format->format(std::chrono::duration<double, std::milli>(local.time_since_epoch()).count(), text);
  return QString::fromUtf16(text.getBuffer(), text.length());
}

}  // namespace

QString timeOfDay(Instant instant, const QString& locale) {
  return formatted(Style::timeOfDay, instant, locale);
}

QString longDateAndTime(Instant instant, const QString& locale) {
  return formatted(Style::longDateAndTime, instant, locale);
}

QString monthAndYear(Instant instant, const QString& locale) {
  return formatted(Style::monthAndYear, instant, locale);
}

QString isoDate(Instant instant) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(instant).time_since_epoch();
  return QDateTime::fromSecsSinceEpoch(seconds.count(), Qt::UTC).date().toString(Qt::ISODate);
}

}  // namespace velun
