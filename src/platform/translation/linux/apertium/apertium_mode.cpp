// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/linux/apertium/apertium_mode.h"

#include <map>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace velun {

namespace {

// Programs that, with the option "-z", answer every text when they have read its final NUL.
bool answersTextByText(const QString& program) {
  static const QStringList kSupported = {
      QStringLiteral("lt-proc"),  QStringLiteral("hfst-proc"), QStringLiteral("cg-proc"),
      QStringLiteral("lrx-proc"), QStringLiteral("lsx-proc"),  QStringLiteral("rtx-proc"),
  };
  return kSupported.contains(program) || program.startsWith(QStringLiteral("apertium-"));
}

// Splits a command into words like the shell. None when it has any other shell syntax.
std::optional<QStringList> splitCommand(const QString& command) {
  QStringList words;
  QString word;
  bool inWord = false;
  QChar quote;
  for (const QChar c : command) {
    if (!quote.isNull()) {
      if (c == quote) {
        quote = QChar();
      } else {
        word += c;
      }
    } else if (c == u'\'' || c == u'"') {
      quote = c;
      inWord = true;
    } else if (c.isSpace()) {
      if (inWord) words += word;
      word.clear();
      inWord = false;
    } else if (QStringLiteral(";&<>`()\\*?").contains(c)) {
      return std::nullopt;
    } else {
      word += c;
      inWord = true;
    }
  }
  if (!quote.isNull()) return std::nullopt;
  if (inWord) words += word;
  return words;
}

}  // namespace

std::optional<std::vector<QStringList>> parseApertiumPipeline(const QString& text) {
  std::vector<QStringList> stages;
  for (const QString& command : text.split(u'|')) {
    std::optional<QStringList> words = splitCommand(command);
    if (!words || words->isEmpty()) return std::nullopt;
    const QString program = QFileInfo(words->front()).fileName();
    if (!answersTextByText(program)) return std::nullopt;
    QStringList stage{words->front(), QStringLiteral("-z")};
    for (const QString& argument : words->mid(1)) {
      // The placeholders of the caller's options: $1 for the marking of unknown words (none), $2
      // for showing ambiguities (no).
      if (argument == QStringLiteral("$1")) {
        stage += QStringLiteral("-n");
      } else if (argument.startsWith(u'$')) {
        if (argument != QStringLiteral("$2")) return std::nullopt;
      } else {
        stage += argument;
      }
    }
    stages.push_back(stage);
  }
  return stages;
}

std::optional<ApertiumModeName> parseApertiumModeName(const QString& name) {
  static const QRegularExpression kName(
      QStringLiteral("^([a-z]{2,3})(?:_[A-Za-z]+)?-([a-z]{2,3})(_[A-Za-z]+)?$"));
  const QRegularExpressionMatch match = kName.match(name);
  if (!match.hasMatch()) return std::nullopt;
  ApertiumModeName result;
  result.pair = {translationLanguage(match.captured(1), true),
                 translationLanguage(match.captured(2), true)};
  result.isVariety = match.hasCaptured(3);
  if (result.pair.source == result.pair.target) return std::nullopt;
  return result;
}

std::vector<ApertiumMode> installedApertiumModes(const QString& folder) {
  std::map<LanguagePair, ApertiumMode> plain;
  std::map<LanguagePair, ApertiumMode> varieties;
  const QFileInfoList files =
      QDir(folder).entryInfoList({QStringLiteral("*.mode")}, QDir::Files, QDir::Name);
  for (const QFileInfo& info : files) {
    const std::optional<ApertiumModeName> name = parseApertiumModeName(info.completeBaseName());
    QFile file(info.filePath());
    if (!name || !file.open(QIODevice::ReadOnly)) continue;
    auto stages = parseApertiumPipeline(QString::fromUtf8(file.readAll()).trimmed());
    if (!stages) continue;
    auto& modes = name->isVariety ? varieties : plain;
    modes.try_emplace(name->pair, ApertiumMode{name->pair, std::move(*stages)});
  }
  plain.merge(varieties);
  std::vector<ApertiumMode> result;
  result.reserve(plain.size());
  for (auto& [pair, mode] : plain) result.push_back(std::move(mode));
  return result;
}

}  // namespace velun
