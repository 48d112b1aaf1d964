// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <QString>

namespace velun {

/// One recognizer that can serve a locale.
struct RecognizerCandidate {
  QString id;     ///< the same in every run of the program: the model's id, or "built-in"
  QString title;  ///< for people; localized
  QString model;  ///< the id of the model that it needs; empty if it comes with the program
  bool isInstalled = false;
  std::int64_t modelBytes = 0;   ///< of its files on disk; 0 if unknown
  std::int64_t memoryBytes = 0;  ///< while it runs; 0 if unknown
  /// Whether the user has to read and agree to a licence before its download.
  bool needsAgreement = false;
  /// Whether Velun adds the case and the punctuation that the model does not write.
  bool getsPunctuation = false;
  bool isChosen = false;  ///< by the user, for this locale
  /// Whether this machine has the memory and the speed for it.
  bool isSuitable = true;

  bool operator==(const RecognizerCandidate&) const = default;
};

}  // namespace velun
