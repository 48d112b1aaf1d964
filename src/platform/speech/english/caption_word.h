// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

namespace velun {

/// One word of a caption with the punctuation marks after it.
struct CaptionWord {
  QString text;                ///< in the case in which it is shown, without the marks
  QString marks;               ///< the marks after it, such as "," or "."; empty for none
  double begin = 0;            ///< seconds in the audio; 0 when unknown
  double end = 0;              ///< seconds in the audio; 0 when unknown
  bool isBeforePause = false;  ///< the speaker pauses after it

  bool operator==(const CaptionWord&) const = default;
};

using CaptionWords = std::vector<CaptionWord>;

/// The words of a text, which are separated by blanks. Times and pauses are unknown.
CaptionWords captionWords(const QString& text);

/// The words and their marks, separated by single spaces.
QString joinedText(const CaptionWords& words);

}  // namespace velun
