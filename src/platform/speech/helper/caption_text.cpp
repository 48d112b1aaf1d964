// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/caption_text.h"

#include <algorithm>
#include <QRegularExpression>

namespace velun {

namespace {

constexpr QChar kWordMark(0x2581);

// Also those of Chinese, Japanese, Arabic and Hindi.
const auto kSentenceMarks = QStringLiteral(".?!…。？！؟।");
const auto kClosingMarks = QStringLiteral(".?!…。？！؟।,;:，、；：،؛");
const auto kClosingQuotes = QStringLiteral("\"'”’»）)」』");

bool isPrintable(char32_t character) {
  return character != 0xFFFD && QChar::isPrint(character) &&
         QChar::category(character) != QChar::Other_PrivateUse;
}

/// The characters at the beginning that can only end something, and blanks.
qsizetype countLateMarks(const QString& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), [](QChar each) {
    return each.isSpace() || kClosingMarks.contains(each);
  });
  return end - text.begin();
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

QString textOfTokens(const QList<QByteArray>& tokens) {
  static const QRegularExpression byte("\\A<0x([0-9A-Fa-f]{2})>\\z");
  QByteArray joined;
  for (const QByteArray& token : tokens) {
    const auto match = byte.match(QString::fromLatin1(token));
    joined += match.hasMatch() ? QByteArray::fromHex(match.captured(1).toLatin1()) : token;
  }
  return printable(QString::fromUtf8(joined));
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

QString lateMarks(const QString& text) {
  return text.left(countLateMarks(text)).trimmed();
}

QString withoutLateMarks(const QString& text) {
  return text.mid(countLateMarks(text));
}

bool endsSentence(const QString& text) {
  qsizetype length = text.size();
  while (length > 0 && kClosingQuotes.contains(text[length - 1])) --length;
  return length > 0 && kSentenceMarks.contains(text[length - 1]);
}

QString withoutEnd(const QString& text) {
  qsizetype length = text.size();
  while (length > 0 && QStringView(u".,?!").contains(text[length - 1])) --length;
  return text.left(length);
}

}  // namespace velun
