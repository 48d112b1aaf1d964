// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/spoken_tokens.h"

#include "platform/speech/helper/caption_text.h"

namespace velun {

namespace {

bool isOnlyMarks(const SherpaStream::Token& token) {
  return withoutLateMarks(textOfTokens({token.text})).isEmpty();
}

}  // namespace

QString textOf(SpokenTokens tokens) {
  QList<QByteArray> texts;
  for (const SherpaStream::Token& token : tokens) texts.append(token.text);
  return textOfTokens(texts);
}

std::optional<double> lastWordTime(SpokenTokens tokens) {
  for (auto token = tokens.rbegin(); token != tokens.rend(); ++token) {
    if (!isOnlyMarks(*token)) return token->time;
  }
  return std::nullopt;
}

std::optional<double> beginOfLastWords(SpokenTokens tokens, std::size_t count, std::size_t total) {
  std::vector<double> begins;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (!tokens[i].text.startsWith(' ') && !tokens[i].text.startsWith("\u2581")) continue;
    const double time = tokens[i].time;
    begins.push_back(i == 0 ? time : (tokens[i - 1].time + time) / 2);
  }
  if (begins.size() != total || count == 0 || count > total) return std::nullopt;
  return begins[total - count];
}

}  // namespace velun
