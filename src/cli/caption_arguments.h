// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/usage.h"
#include "settings/input_choice.h"
#include "settings/program_choice.h"

#include <optional>
#include <QString>
#include <QStringList>

namespace velun {

/// How `velun captions` writes lines.
enum class CaptionOutput { text, subRip, webVTT, json };

/// What `velun captions` was asked for.
struct CaptionArguments {
  /// The file to caption; "-" is the standard input; nullopt captions `input` live.
  std::optional<QString> recording = {};
  InputChoice input = InputChoice::computer;
  /// The device of `input`, or the output of both, by its id or name; empty: the default one.
  QString device = {};
  /// Whose sound of the computer's.
  ProgramChoice program = {};
  /// The locale, such as "en_US"; empty: that of the settings.
  QString localeID = {};
  /// A recognizer's id; empty: the one that the window would use.
  QString model = {};
  CaptionOutput output = CaptionOutput::text;
  /// Whether text shows when each line was said.
  bool showsTimes = false;
  bool showsDrafts = false;
  /// The language to translate into; empty: none.
  QString target = {};
  /// List the recognizers instead.
  bool listsModels = false;
  /// List the devices instead.
  bool listsDevices = false;
};

/// Reads the arguments after "captions". Throws `UsageError` and `HelpRequested`.
CaptionArguments parseCaptionArguments(const QStringList& arguments);

}  // namespace velun
