// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/student_config.h"
#include "platform/translation/student/student_engine.h"

#include <QString>
#include <QStringList>

namespace velun::test {

/// A model of real size with random weights: its output has no meaning but takes as long as that of
/// a trained model. It never emits the end token.
struct MadeUpModel {
  StudentConfig sizes;
  int vocabulary = 0;
  int shortlistLength = 50;  ///< for each source token; as many more tokens are always allowed

  /// The largest published size.
  static MadeUpModel base();

  /// Writes its files into a folder, with the same numbers every time.
  void write(const QString& folder) const;

  /// The paths of the files in the folder.
  static StudentFiles files(const QString& folder);

  /// Sentences of `tokens` tokens, end token included. Every token is one word.
  QStringList sentences(int count, int tokens) const;
};

}  // namespace velun::test
