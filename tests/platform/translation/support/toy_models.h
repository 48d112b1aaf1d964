// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/student_engine.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace velun::test {

/// A variant of one of the small models that were trained for the tests.
struct ToyVariant {
  enum class Numbers { floats, integers, integersWithoutInputScales };

  QString pair;  ///< "enes" (one vocabulary) or "enko" (two)
  Numbers numbers = Numbers::integers;
  bool withShortlist = true;

  /// Such as "enko-integers-all".
  QString name() const;

  /// The reference engine's name for this number format.
  QString precision() const;
};

/// Every combination.
std::vector<ToyVariant> toyVariants();

/// The files of a variant. Files that are not in the source tree are written into `folder`.
StudentFiles filesOf(const ToyVariant& variant, const QTemporaryDir& folder);

/// The files of a pair in the source tree: 8-bit, with a shortlist.
StudentFiles toyFiles(const QString& pair);

/// The lines of a file in the folder of the models, such as "sentences.en" or a golden translation.
QStringList toyLines(const QString& name);

/// The sentences that every variant is tested with: the toy language's ("sentences.en"), lines of
/// hundreds of tokens, words in random order, and unknown tokens.
QStringList toySentences(const ToyVariant& variant);

/// A golden translation without the surrounding white space, invisible characters included, that
/// the reference engine restores.
QString withoutOuterSpace(const QString& translation);

}  // namespace velun::test
