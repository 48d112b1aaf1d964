// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/clips.h"
#include "recognition/word_errors.h"

#include <QStringList>
#include <vector>

namespace velun::bench {

/// How well the words of a list were recognized, and all others.
struct ListedWords {
  int spoken = 0;        ///< words of the list that were said
  int right = 0;         ///< those of them that were recognized
  int falselyHeard = 0;  ///< words of the list that were recognized but not said
  WordErrors others;     ///< of the texts without the words of the list
};

/// `texts` are what was recognized in the clips. `list` has names and terms, of one or more words.
ListedWords countListedWords(const std::vector<Clip>& clips, const QStringList& texts,
                             const QStringList& list);

/// Sentences of our own with names and terms in synthetic voices, made in `folder`.
std::vector<Clip> synthesiseNames(const QString& folder);

/// The names and terms of these sentences, and as many that do not occur in them.
QStringList namesAndTerms();

}  // namespace velun::bench
