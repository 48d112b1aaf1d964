// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// libvosk's own names of its objects.
struct VoskModel;
struct VoskRecognizer;

namespace velun::vosk {

/// SHA-256 of the only version of libvosk that is loaded, 0.3.39.
constexpr auto kLibrarySha256 = "9f94ef218c32e271ae8ac84065ab25191af48832c06c6e624984b1c80f0b0920";

/// The functions of libvosk that we call. It was written against one version, works in the calling
/// thread, and ends the process on some invalid input.
struct Library {
  void (*setLogLevel)(int level);
  /// Null on failure.
  VoskModel* (*createModel)(const char* folder);
  void (*destroyModel)(VoskModel*);
  /// Null on failure. Damaged files may show only here.
  VoskRecognizer* (*createRecognizer)(VoskModel*, float sampleRate);
  void (*destroyRecognizer)(VoskRecognizer*);
  void (*setWords)(VoskRecognizer*, int areWanted);
  /// Takes samples in ±32768; one that is not a number ends the process. Returns -1 on failure.
  int (*acceptWaveform)(VoskRecognizer*, const float*, int count);
  // JSON, which belongs to the recognizer and is valid until its next call.
  const char* (*partialResult)(VoskRecognizer*);
  /// Ends the phrase and keeps the adaptation to the voice.
  const char* (*result)(VoskRecognizer*);
  /// Ends the phrase and drops the adaptation.
  const char* (*finalResult)(VoskRecognizer*);
};

/// Checks and loads the library, which stays loaded until the process ends, and makes it silent.
/// It contains copies of BLAS and OpenFst: never load it beside sherpa-onnx. Throws `DamagedFile`
/// and `std::runtime_error`.
const Library& load(const QString& path);

/// The library for programs in `programFolder`: beside the installed programs, or in the npm
/// package of a source tree. Empty where there is none, as on processors other than x86-64.
QString findLibrary(const QString& programFolder);

}  // namespace velun::vosk
