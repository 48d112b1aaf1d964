// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/model_fixture.h"
#include "model/caption_session.h"

#include <array>
#include <random>

namespace velun::test {

/// The scripted translation, which names its text and language.
inline QString translationOf(const QString& text, const QString& target) {
  return target + ": " + text;
}

/// Drives a caption model through one random sequence of commands, settings changes, events,
/// failures, translations and write failures, and compares it after every step with a simple
/// reference model.
class ModelChecker {
 public:
  /// How often things happened, to show that a run reached them.
  struct Counts {
    int lines = 0;
    int translations = 0;
    int engineStarts = 0;
    int cancelledStarts = 0;
    int writeFailures = 0;
    int comparedFiles = 0;
    int newSessions = 0;
    int deletions = 0;
    int lateAnswers = 0;
  };

  ModelChecker(std::uint64_t seed, Counts& counts);

  /// Runs the sequence. Returns the first problem with the steps that led to it; none on success.
  std::optional<QString> run(int steps);

 private:
  struct Step {
    const char* name;
    int weight;
    void (ModelChecker::*perform)();
  };
  static const std::array<Step, 30> kSteps;

  int below(int limit) { return static_cast<int>(random_() % static_cast<std::uint64_t>(limit)); }
  bool isLucky(int percent) { return below(100) < percent; }
  void performRandomStep();
  void fail(const QString& problem);

  void start();
  void stop();
  void shutdown();
  void restart();
  void newSession();
  void changeInput();
  void changeLocale();
  void changeTarget();
  void toggleTranslation();
  void toggleTranslationOnly();
  void toggleAutoSave();
  void draft();
  void finalResult();
  void blankResult();
  void prepareLastWords();
  void status();
  void failureEvent();
  void save();
  void deleteFile();
  void breakStore();
  void repairStore();
  void holdOperations();
  void letOperationsPass();
  void releaseOperation();
  void failOperation();
  void failNextStart();
  void answerTranslation();
  void failTranslation();
  void advanceClock();
  void loadLanguages();

  FinalEvent makeFinal();
  void expectLines(const SpeechRecognitionEvent& event);
  void prepareTranslation(TranslationScript& script);
  void checkTranslatorsClosed();
  void finish();
  void destroy();

  void check();
  void checkEngine();
  void checkLines();
  void checkDerived();
  void checkSaving();
  void checkSettled();

  std::mt19937_64 random_;
  Counts& counts_;
  ModelFixture fixture_;
  QStringList trail_;
  std::optional<QString> problem_;

  int lastNumber_ = 0;
  QStringList expectedTexts_;
  QUuid sessionID_;
  bool expectsSaving_ = false;
  bool isBroken_ = false;
  /// The end that the file still holds after captions were started again; until the next write.
  std::optional<Instant> writtenEnd_;
  std::optional<Instant> lastEnd_;
};

}  // namespace velun::test
