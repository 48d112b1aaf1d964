// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/speaker_labels.h"

#include "language/localization.h"
#include "model/speaker.h"

#include <array>

namespace velun {

namespace {

// Colours that people with any colour vision can tell apart, light and dark ones.
constexpr std::array<QRgb, 6> kLight = {0xFF8AB4F8, 0xFFFFC46B, 0xFF7FD8A6,
                                        0xFFE4A3F2, 0xFFFF9E8A, 0xFFD8D86A};
constexpr std::array<QRgb, 6> kDark = {0xFF1B4F9C, 0xFF8A4B00, 0xFF14633C,
                                       0xFF7A2A8C, 0xFFA02A14, 0xFF5A5A00};

}  // namespace

SpeakerLabels::SpeakerLabels(const std::vector<Line>& lines, bool isOnDark) : isOnDark_(isOnDark) {
  for (const QString& speaker : speakersOf(lines)) places_.insert(speaker, places_.size());
}

LineLabel SpeakerLabels::labelOf(const Line& line) const {
  if (!line.speaker) return {};
  const auto& colors = isOnDark_ ? kLight : kDark;
  const qsizetype place = places_.value(*line.speaker);
  return {speakerLabel(*line.speaker),
          QColor::fromRgb(colors[static_cast<std::size_t>(place) % colors.size()]),
          L("Estimated by the voice. Click to name this speaker.",
            "목소리로 추정한 화자입니다. 클릭하면 이름을 지정할 수 있습니다.")};
}

}  // namespace velun
