// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

namespace velun::test {

/// A time in UTC.
inline Instant utc(int year, unsigned month, unsigned day, int hour, int minute, int second) {
  using namespace std::chrono;
  return Instant(sys_days(std::chrono::year(year) / month / day)) + hours(hour) + minutes(minute) +
         seconds(second);
}

/// A session with two English lines, the first one translated.
inline CaptionSession sampleSession() {
  Line welcome{QUuid("0C1D2E3F-4A5B-4C6D-8E7F-90A1B2C3D4E5"),
               utc(2025, 3, 1, 9, 5, 7),
               "Welcome back to the show.",
               "en_US",
               AudioInput::computer,
               {{"ko", "쇼에 다시 오신 것을 환영합니다."}},
               {},
               {}};
  Line rivers{QUuid("1A2B3C4D-5E6F-4A7B-8C9D-0E1F2A3B4C5D"),
              utc(2025, 3, 1, 9, 5, 11),
              "Today we talk about rivers.",
              "en_US",
              AudioInput::computer,
              {},
              {},
              {}};
  return {1,
          QUuid("9F2C4E1A-3B7D-4C8E-A1F0-5D6E7F809A1B"),
          utc(2025, 3, 1, 9, 4, 58),
          utc(2025, 3, 1, 9, 12, 40),
          "Caption Session",
          {welcome, rivers}};
}

/// A session of `count` lines with one Korean translation each, about 425 bytes a line.
inline CaptionSession longSession(std::size_t count) {
  CaptionSession session = sampleSession();
  session.lines.clear();
  for (std::size_t i = 0; i < count; ++i) {
    Line line;
    line.time = session.startedAt + std::chrono::seconds(3 * i);
    line.text =
        QStringLiteral("Line %1 of the talk goes on about rivers and how they find the sea.")
            .arg(i);
    line.sourceLanguage = QStringLiteral("en_US");
    line.input = AudioInput::computer;
    line.translations[QStringLiteral("ko")] =
        QStringLiteral("강연의 %1번째 줄은 강이 어떻게 바다를 찾아가는지 계속 이야기합니다.")
            .arg(i);
    session.lines.push_back(std::move(line));
  }
  return session;
}

}  // namespace velun::test
