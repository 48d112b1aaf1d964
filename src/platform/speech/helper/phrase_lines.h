// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/transcription_result.h"

#include <optional>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// Turns the growing text of a phrase into results: sentences become final as soon as they are
/// certain, although the phrase goes on, and the drafts keep the rest. What was final once never
/// changes.
class PhraseLines {
 public:
  using Results = std::vector<TranscriptionResult>;

  /// `language` is that of the text ("en").
  explicit PhraseLines(QString language);

  /// The text of the whole phrase until now.
  Results update(const QString& text);

  /// The text of the whole phrase, which has ended.
  Results finish(const QString& text);

  /// The number of words of the last draft of the phrase.
  std::size_t draftCount() const {
    return static_cast<std::size_t>(draft_.split(u' ', Qt::SkipEmptyParts).size());
  }

  /// Whether the phrase has any text.
  bool isEmpty() const { return finalWords_.isEmpty() && draft_.isEmpty(); }

  /// The number of words of the phrase that are final.
  std::size_t finalCount() const { return static_cast<std::size_t>(finalWords_.size()); }

 private:
  struct Rest;
  Rest restOf(const QString& text) const;

  QString language_;
  QStringList finalWords_;         ///< of the phrase, in lower case and without marks
  bool hasEndedSentence_ = false;  ///< after the last of them
  QString draft_;                  ///< the last one that was reported
};

}  // namespace velun
