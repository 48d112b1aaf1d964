// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <QString>
#include <QStringList>
#include <QVersionNumber>

namespace velun::sherpa {

// The structures of sherpa-onnx's C API, in its layout on 64-bit Linux. Null pointers and zeros
// select its defaults. Strings are UTF-8 and are copied.

struct ModelFiles {
  const char* encoder;  ///< a transducer
  const char* decoder;
  const char* joiner;
  const char* paraformerEncoder;
  const char* paraformerDecoder;
  const char* zipformer2Ctc;
  const char* tokens;
  std::int32_t threads;
  const char* provider;
  std::int32_t debug;
  const char* modelType;
  const char* modelingUnit;
  const char* bpeVocabulary;
  const char* tokensText;
  std::int32_t tokensTextBytes;
  const char* nemoCtc;
  const char* toneCtc;
};

struct RecognizerConfig {
  std::int32_t sampleRate;
  std::int32_t featureDimension;
  ModelFiles model;
  const char* decodingMethod;
  std::int32_t maxActivePaths;
  std::int32_t detectsEndpoints;
  float rule1Silence;  ///< seconds without any speech
  float rule2Silence;  ///< seconds after speech
  float rule3Length;   ///< seconds of one phrase
  const char* hotwordsFile;
  float hotwordsScore;
  const char* graph;
  std::int32_t graphMaxActive;
  const char* ruleFsts;
  const char* ruleFars;
  float blankPenalty;
  const char* hotwordsText;
  std::int32_t hotwordsTextBytes;
  const char* unused;
  const char* homophoneLexicon;
  const char* homophoneRules;
};

struct Result {
  const char* text;
  const char* tokenBlock;
  const char* const* tokens;
  const float* times;  ///< seconds since the beginning of the phrase; may be null
  std::int32_t count;
  const char* json;
};

struct PunctuationConfig {
  const char* model;
  const char* vocabulary;
  std::int32_t threads;
  std::int32_t debug;
  const char* provider;
};

struct SpeakerConfig {
  const char* model;
  std::int32_t threads;
  std::int32_t debug;
  const char* provider;
};

static_assert(sizeof(ModelFiles) == 136 && sizeof(RecognizerConfig) == 272 &&
              sizeof(Result) == 48 && sizeof(PunctuationConfig) == 32 &&
              sizeof(SpeakerConfig) == 24);
static_assert(offsetof(ModelFiles, tokens) == 48 && offsetof(ModelFiles, provider) == 64 &&
              offsetof(ModelFiles, modelType) == 80 && offsetof(ModelFiles, nemoCtc) == 120);
static_assert(offsetof(RecognizerConfig, decodingMethod) == 144 &&
              offsetof(RecognizerConfig, rule1Silence) == 160 &&
              offsetof(RecognizerConfig, blankPenalty) == 224 &&
              offsetof(RecognizerConfig, homophoneRules) == 264);
static_assert(offsetof(Result, times) == 24 && offsetof(Result, json) == 40);

/// The functions of sherpa-onnx that we call. Many kinds of invalid input make it end the process.
struct Library {
  const char* (*version)();
  const void* (*createRecognizer)(const RecognizerConfig*);
  void (*destroyRecognizer)(const void*);
  const void* (*createStream)(const void* recognizer);
  void (*destroyStream)(const void*);
  void (*acceptWaveform)(const void* stream, std::int32_t rate, const float*, std::int32_t count);
  std::int32_t (*isReady)(const void* recognizer, const void* stream);
  void (*decode)(const void* recognizer, const void* stream);
  const Result* (*result)(const void* recognizer, const void* stream);
  void (*destroyResult)(const Result*);
  void (*reset)(const void* recognizer, const void* stream);
  std::int32_t (*isEndpoint)(const void* recognizer, const void* stream);
  void (*setOption)(const void* stream, const char* key, const char* value);
  const void* (*createPunctuation)(const PunctuationConfig*);
  void (*destroyPunctuation)(const void*);
  const char* (*addPunctuation)(const void*, const char* text);
  void (*freePunctuated)(const char*);
  const void* (*createSpeakerModel)(const SpeakerConfig*);
  void (*destroySpeakerModel)(const void*);
  std::int32_t (*printSize)(const void* model);
  const void* (*createPrintStream)(const void* model);  ///< destroyed like any stream
  void (*inputFinished)(const void* stream);
  std::int32_t (*canPrint)(const void* model, const void* stream);
  const float* (*print)(const void* model, const void* stream);
  void (*destroyPrint)(const float*);
};

/// Loads the library, which stays loaded until the process ends. Throws `std::runtime_error`.
const Library& load(const QString& path);

/// Throws `std::runtime_error` if the library is older than `minimum`, such as "1.13.5"; an empty
/// text accepts any version.
void requireVersion(const Library& library, const QString& minimum);

/// The version of the library at `libraryPath` as its package says, without loading it; null if it
/// is not known.
QVersionNumber versionBeside(const QString& libraryPath);

/// Where the library may be, for programs in `programFolder`: the path in VELUN_RECOGNIZER_LIBRARY,
/// beside the installed programs, and in the npm packages of a source tree.
QStringList candidatePaths(const QString& programFolder);

/// The first of them that exists; empty when none does.
QString findLibrary(const QString& programFolder);

}  // namespace velun::sherpa
