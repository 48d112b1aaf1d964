// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/language_pair.h"

#include <optional>
#include <QString>
#include <QStringList>
#include <vector>

namespace velun {

/// One installed direction of Apertium: the programs that a text passes through, each with its
/// arguments, set up to serve one text after the other.
struct ApertiumMode {
  LanguagePair pair;
  std::vector<QStringList> stages;  ///< Of each the program first.
};

/// Reads the pipeline of a mode file. None when it has anything that cannot be kept running: a
/// program that is not known to answer text by text, or a construct of the shell.
std::optional<std::vector<QStringList>> parseApertiumPipeline(const QString& text);

/// What a mode file's name stands for.
struct ApertiumModeName {
  LanguagePair pair;
  bool isVariety = false;  ///< Into a variety of the target language.
};

/// Reads a mode file's name ("eng-spa", "cat-spa_valencia"); none when it is not a translation.
std::optional<ApertiumModeName> parseApertiumModeName(const QString& name);

/// The modes in a folder, one for each direction; the plain target language before its varieties.
std::vector<ApertiumMode> installedApertiumModes(const QString& folder);

}  // namespace velun
