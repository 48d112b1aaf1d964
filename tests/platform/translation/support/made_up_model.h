// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/student_config.h"
#include "platform/translation/student/student_engine.h"

#include <QString>
#include <QStringList>

namespace velun::test {

/// A model of real size whose weights are random numbers: it says nothing, but takes as long as a
/// trained one. It never ends a sentence by itself.
struct MadeUpModel {
  StudentConfig sizes;
  int vocabulary = 0;
  int shortlistLength = 50;  ///< for each source token, and as many that are always allowed

  /// The largest of the sizes in use.
  static MadeUpModel base();

  /// Writes its files into a folder; the same numbers every time.
  void write(const QString& folder) const;

  /// Where they are.
  static StudentFiles files(const QString& folder);

  /// Sentences of `tokens` tokens, the end token included, each token a word of its own.
  QStringList sentences(int count, int tokens) const;
};

}  // namespace velun::test
