// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/titles.h"

#include <QHash>

namespace velun {

CaptionWords writeTitles(CaptionWords words) {
  static const QHash<QString, QString> titles = {
      {"mr", "Mr."}, {"mrs", "Mrs."}, {"ms", "Ms."}, {"dr", "Dr."}, {"jr", "Jr."}};
  for (std::size_t i = 0; i < words.size(); ++i) {
    const QString word = words[i].text.toLower();
    const auto title = titles.find(word);
    if (title == titles.end()) continue;
    const bool isBeforeName =
        i + 1 < words.size() && !words[i + 1].text.isEmpty() && words[i + 1].text[0].isUpper();
    if (word == QLatin1String("ms") && !isBeforeName) continue;
    words[i].text = *title;
    // The full stop of the title is the end of the sentence too, and no sentence ends before a
    // name.
    if (words[i].marks == QLatin1String(".")) words[i].marks.clear();
  }
  return words;
}

}  // namespace velun
