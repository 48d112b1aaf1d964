// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/hotwords.h"

#include <algorithm>
#include <QHash>
#include <QSet>
#include <QStringList>
#include <vector>

namespace velun {

namespace {

constexpr QChar kWordBegin(0x2581);

/// The tokens by their numbers. `<blk>` and the like are not among them.
struct Tokens {
  QHash<QString, int> ids;
  bool hasWordBegins = false;
  bool hasLowerCase = false;
  bool hasUpperCase = false;
  qsizetype longest = 0;
};

Tokens readTokens(const QByteArray& list) {
  Tokens tokens;
  for (const QByteArray& line : list.split('\n')) {
    const qsizetype space = line.lastIndexOf(' ');
    const QString token = QString::fromUtf8(line.left(std::max<qsizetype>(space, 0))).trimmed();
    if (token.isEmpty() || (token.startsWith(u'<') && token.endsWith(u'>'))) continue;
    tokens.ids.insert(token, line.mid(space + 1).trimmed().toInt());
    tokens.hasWordBegins |= token.startsWith(kWordBegin);
    tokens.hasLowerCase |= std::ranges::any_of(token, [](QChar c) { return c.isLower(); });
    tokens.hasUpperCase |= std::ranges::any_of(token, [](QChar c) { return c.isUpper(); });
    tokens.longest = std::max(tokens.longest, token.size());
  }
  return tokens;
}

/// Whether the text is a row of tokens.
bool canBeWritten(const QString& text, const Tokens& tokens) {
  std::vector<bool> reaches(static_cast<std::size_t>(text.size()) + 1);
  reaches[0] = true;
  for (qsizetype end = 1; end <= text.size(); ++end) {
    for (qsizetype size = 1; size <= std::min(end, tokens.longest); ++size) {
      if (!reaches[static_cast<std::size_t>(end - size)]) continue;
      if (!tokens.ids.contains(text.mid(end - size, size))) continue;
      reaches[static_cast<std::size_t>(end)] = true;
      break;
    }
  }
  return reaches.back();
}

bool canBeWritten(const QStringList& words, const Tokens& tokens) {
  return std::ranges::all_of(words, [&tokens](const QString& word) {
    return canBeWritten(tokens.hasWordBegins ? kWordBegin + word : word, tokens);
  });
}

QString inModelsCase(const QString& line, const Tokens& tokens) {
  if (tokens.hasLowerCase == tokens.hasUpperCase) return line;
  return tokens.hasLowerCase ? line.toLower() : line.toUpper();
}

QByteArray vocabularyOf(const Tokens& tokens) {
  std::vector<std::pair<int, QString>> ordered;
  for (auto token = tokens.ids.begin(); token != tokens.ids.end(); ++token) {
    ordered.emplace_back(token.value(), token.key());
  }
  std::ranges::sort(ordered);
  QByteArray vocabulary;
  for (std::size_t i = 0; i < ordered.size(); ++i) {
    vocabulary += ordered[i].second.toUtf8() + '\t' + QByteArray::number(-int(i)) + '\n';
  }
  return vocabulary;
}

}  // namespace

Hotwords makeHotwords(const QString& userWords, const QByteArray& list) {
  const Tokens tokens = readTokens(list);
  Hotwords hotwords;
  for (const QString& each : userWords.split(u'\n', Qt::SkipEmptyParts)) {
    const QString line = inModelsCase(each.simplified(), tokens);
    // These begin settings of sherpa-onnx.
    const bool hasSettings = line.contains(u':') || line.contains(u'#') || line.contains(u'@');
    const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
    if (words.isEmpty() || hasSettings || !canBeWritten(words, tokens)) continue;
    hotwords.text += line.toUtf8() + '\n';
  }
  if (hotwords.text.isEmpty()) return {};
  hotwords.unit = tokens.hasWordBegins ? "bpe" : "cjkchar";
  if (tokens.hasWordBegins) hotwords.vocabulary = vocabularyOf(tokens);
  return hotwords;
}

}  // namespace velun
