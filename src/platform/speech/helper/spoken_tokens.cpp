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

}  // namespace velun
