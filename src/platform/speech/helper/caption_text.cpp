// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/caption_text.h"

#include <algorithm>
#include <QRegularExpression>

namespace velun {

namespace {

constexpr QChar kWordMark(0x2581);

bool isPrintable(char32_t character) {
  return character != 0xFFFD && QChar::isPrint(character) &&
         QChar::category(character) != QChar::Other_PrivateUse;
}

}  // namespace

QString printable(const QString& text) {
  static const QRegularExpression mark("<[A-Za-z0-9_|/]+>");
  QString kept = text;
  kept.remove(mark);
  QString result;
  for (const char32_t character : kept.toUcs4()) {
    const bool isBlank = QChar::isSpace(character) || character == kWordMark.unicode();
    if (isBlank) {
      result += u' ';
    } else if (isPrintable(character)) {
      result += QString::fromUcs4(&character, 1);
    }
  }
  return result.simplified();
}

QString textOfTokens(const QStringList& tokens) {
  return printable(tokens.join(QString()));
}

QString cased(const QString& text, const QString& language, bool folds) {
  QString result = folds ? text.toLower() : text;
  const bool hasCase =
      std::any_of(result.begin(), result.end(), [](QChar each) { return each.isUpper(); });
  if (hasCase || result.isEmpty()) return result;
  result[0] = result[0].toUpper();
  if (language == "en") {
    static const QRegularExpression alone("\\bi\\b");
    result.replace(alone, "I");
  }
  return result;
}

QString withoutEnd(const QString& text) {
  qsizetype length = text.size();
  while (length > 0 && QStringView(u".,?!").contains(text[length - 1])) --length;
  return text.left(length);
}

}  // namespace velun
