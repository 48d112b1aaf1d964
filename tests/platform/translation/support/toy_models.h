// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/student_engine.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace velun::test {

/// One way to run one of the small models that were trained for the tests.
struct ToyVariant {
  enum class Numbers { floats, integers, integersWithoutInputScales };

  QString pair;  ///< "enes" (one vocabulary) or "enko" (two)
  Numbers numbers = Numbers::integers;
  bool withShortlist = true;

  /// Such as "enko-integers-all".
  QString name() const;

  /// What the reference engine calls these numbers.
  QString precision() const;
};

/// Every combination.
std::vector<ToyVariant> toyVariants();

/// The files of a variant; those that are not in the tree are written into `folder`.
StudentFiles filesOf(const ToyVariant& variant, const QTemporaryDir& folder);

/// The files of a pair as they are in the tree: 8-bit, with a shortlist.
StudentFiles toyFiles(const QString& pair);

/// The lines of a file beside the models, such as "sentences.en" or a golden translation.
QStringList toyLines(const QString& name);

/// The sentences that every variant is tried with: the toy language's ("sentences.en"), lines of
/// hundreds of tokens, words in an order without sense, and tokens that no vocabulary has.
QStringList toySentences(const ToyVariant& variant);

/// A golden translation without the white space that the reference engine puts back around it,
/// the invisible kind included.
QString withoutOuterSpace(const QString& translation);

}  // namespace velun::test
