// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/linux/apertium/apertium_stream.h"

namespace velun::apertium_stream {

namespace {

constexpr QByteArrayView kSpecial = "\\^$@/[]{}<>";

// Without it Apertium holds back the last words of a text that does not end in a punctuation mark
// until the next text.
constexpr QByteArrayView kEnd = "[]";

}  // namespace

QByteArray encode(const QString& text) {
  QByteArray request;
  for (const char c : text.toUtf8()) {
    if (c == '\0') continue;
    if (c == '~') {
      // The post-generator treats it as its own mark even when it is escaped.
      request += "[~]";
      continue;
    }
    if (kSpecial.contains(c)) request += '\\';
    request += c;
  }
  request += kEnd;
  request += '\0';
  return request;
}

std::optional<QString> decode(const QByteArray& answer) {
  if (!answer.endsWith(kEnd)) return std::nullopt;
  QByteArray text;
  for (qsizetype i = 0; i < answer.size(); ++i) {
    char c = answer[i];
    if (c == '[' || c == ']') continue;
    if (c == '\\' && i + 1 < answer.size()) c = answer[++i];
    text += c;
  }
  // Removed words leave their spaces.
  QString plain = QString::fromUtf8(text).trimmed();
  while (plain.contains(u"  ")) plain.replace(QStringLiteral("  "), QStringLiteral(" "));
  return plain;
}

}  // namespace velun::apertium_stream
