// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/language_pair.h"

#include <optional>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// One installed direction of Apertium: a pipeline of programs that answer text by text.
struct ApertiumMode {
  LanguagePair pair;
  std::vector<QStringList> stages;  ///< Each the name of a program and its arguments.
};

/// Parses the pipeline of a mode file. None when it cannot be kept running between texts because of
/// an unknown program or a shell construct.
std::optional<std::vector<QStringList>> parseApertiumPipeline(const QString& text);

/// The meaning of a mode file's name.
struct ApertiumModeName {
  LanguagePair pair;
  bool isVariety = false;  ///< Into a variety of the target language.
};

/// Parses a mode file's name ("eng-spa", "cat-spa_valencia"); none when it is not a translation.
std::optional<ApertiumModeName> parseApertiumModeName(const QString& name);

/// The modes in a folder, one for each direction; the plain target language before its varieties.
std::vector<ApertiumMode> installedApertiumModes(const QString& folder);

}  // namespace velun
