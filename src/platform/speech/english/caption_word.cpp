// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/caption_word.h"

#include <QStringList>

namespace velun {

namespace {

/// The length of a word without the marks at its end. The full stop of an abbreviation ("p.m.") is
/// a part of the word, and so is everything in a word of marks alone ("...").
qsizetype lengthWithoutMarks(const QString& word) {
  qsizetype length = word.size();
  while (length > 0 && QStringView(u".,?!;:…").contains(word[length - 1])) --length;
  if (length == 0) return word.size();
  const bool isAbbreviation = length >= 3 && word[length - 1].isLetter() &&
                              word[length - 2] == u'.' && word.size() > length &&
                              word[length] == u'.';
  return isAbbreviation ? length + 1 : length;
}

}  // namespace

CaptionWords captionWords(const QString& text) {
  CaptionWords words;
  for (const QString& word : text.simplified().split(u' ', Qt::SkipEmptyParts)) {
    const qsizetype length = lengthWithoutMarks(word);
    words.push_back({word.left(length), word.mid(length)});
  }
  return words;
}

QString joinedText(const CaptionWords& words) {
  QString text;
  for (const CaptionWord& word : words) {
    if (!text.isEmpty()) text += u' ';
    text += word.text + word.marks;
  }
  return text;
}

}  // namespace velun
