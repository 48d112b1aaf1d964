// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/model_checker.h"

#include <numeric>

namespace velun::test {

using namespace std::chrono_literals;

namespace {

const QStringList kLocales = {"en_US", "en_GB", "ko_KR", "fr_FR"};
const QStringList kTargets = {"ko", "en", "ja"};

}  // namespace

const std::array<ModelChecker::Step, 30> ModelChecker::kSteps = {{
    {"start", 10, &ModelChecker::start},
    {"stop", 5, &ModelChecker::stop},
    {"shutdown", 3, &ModelChecker::shutdown},
    {"restart", 1, &ModelChecker::restart},
    {"new session", 3, &ModelChecker::newSession},
    {"change input", 2, &ModelChecker::changeInput},
    {"change locale", 2, &ModelChecker::changeLocale},
    {"change target", 2, &ModelChecker::changeTarget},
    {"toggle translation", 3, &ModelChecker::toggleTranslation},
    {"toggle translation only", 2, &ModelChecker::toggleTranslationOnly},
    {"toggle auto-save", 2, &ModelChecker::toggleAutoSave},
    {"draft", 5, &ModelChecker::draft},
    {"final", 14, &ModelChecker::finalResult},
    {"blank final", 1, &ModelChecker::blankResult},
    {"last words", 2, &ModelChecker::prepareLastWords},
    {"status", 1, &ModelChecker::status},
    {"failure", 2, &ModelChecker::failureEvent},
    {"save", 4, &ModelChecker::save},
    {"delete file", 2, &ModelChecker::deleteFile},
    {"break store", 2, &ModelChecker::breakStore},
    {"repair store", 3, &ModelChecker::repairStore},
    {"hold operations", 3, &ModelChecker::holdOperations},
    {"let operations pass", 3, &ModelChecker::letOperationsPass},
    {"release operation", 6, &ModelChecker::releaseOperation},
    {"fail operation", 2, &ModelChecker::failOperation},
    {"fail next start", 1, &ModelChecker::failNextStart},
    {"answer translation", 8, &ModelChecker::answerTranslation},
    {"fail translation", 2, &ModelChecker::failTranslation},
    {"advance clock", 4, &ModelChecker::advanceClock},
    {"load languages", 1, &ModelChecker::loadLanguages},
}};

ModelChecker::ModelChecker(std::uint64_t seed, Counts& counts) : random_(seed), counts_(counts) {
  fixture_.locales = kLocales;
  fixture_.languages = kTargets;
  fixture_.settings.setTranslate(isLucky(50));
  sessionID_ = fixture_.model->session().id;
  fixture_.engine->onEmit = [this](const SpeechRecognitionEvent& event) {
    expectLines(event);
  };
  fixture_.translation.prepareScript = [this](TranslationScript& script) {
    prepareTranslation(script);
  };
  CaptionViewModel* const model = fixture_.model.get();
  QObject::connect(model, &CaptionViewModel::translationChanged, model,
                   [this] { ++counts_.translations; });
  QObject::connect(model, &CaptionViewModel::saveErrorChanged, model, [this, model] {
    if (model->saveError()) ++counts_.writeFailures;
  });
  // Only a start, which takes the end away, changes the session without writing it.
  QObject::connect(model, &CaptionViewModel::sessionChanged, model, [this, model] {
    const std::optional<Instant> end = model->session().endedAt;
    writtenEnd_ = end ? std::nullopt : lastEnd_;
    lastEnd_ = end;
  });
}

std::optional<QString> ModelChecker::run(int steps) {
  for (int step = 0; step < steps && !problem_; ++step) {
    performRandomStep();
    if (isLucky(70)) {
      settle();
      check();
      if (!problem_) checkSettled();
    } else {
      check();
    }
  }
  if (!problem_ && isLucky(50)) finish();
  counts_.engineStarts += static_cast<int>(fixture_.engine->calls.count("started"));
  counts_.cancelledStarts += fixture_.engine->isStopRequested ? 1 : 0;
  destroy();
  return problem_;
}

void ModelChecker::performRandomStep() {
  static const int total = std::accumulate(
      kSteps.begin(), kSteps.end(), 0, [](int sum, const Step& step) { return sum + step.weight; });
  int choice = below(total);
  for (const Step& step : kSteps) {
    choice -= step.weight;
    if (choice >= 0) continue;
    trail_.append(step.name);
    (this->*step.perform)();
    return;
  }
}

void ModelChecker::fail(const QString& problem) {
  if (!problem_) problem_ = problem + "\nafter: " + trail_.join(", ");
}

void ModelChecker::start() {
  fixture_.model->start();
}

void ModelChecker::stop() {
  fixture_.model->stop();
}

void ModelChecker::shutdown() {
  fixture_.tasks.push_back(fixture_.model->shutdown());
}

void ModelChecker::restart() {
  fixture_.model->restart();
}

void ModelChecker::newSession() {
  const bool isAllowed = !fixture_.model->isRunning() && !fixture_.model->isTransitioning();
  fixture_.model->newSession();
  if (!isAllowed) return;
  ++counts_.newSessions;
  if (fixture_.model->session().id == sessionID_) fail("the session was not replaced");
  sessionID_ = fixture_.model->session().id;
  expectedTexts_.clear();
  expectsSaving_ = fixture_.settings.autoSaveSessions();
  writtenEnd_.reset();
}

void ModelChecker::changeInput() {
  fixture_.settings.setUseMic(!fixture_.settings.useMic());
}

void ModelChecker::changeLocale() {
  fixture_.settings.setLocaleID(kLocales[below(static_cast<int>(kLocales.size()))]);
}

void ModelChecker::changeTarget() {
  fixture_.settings.setTargetID(kTargets[below(static_cast<int>(kTargets.size()))]);
}

void ModelChecker::toggleTranslation() {
  fixture_.settings.setTranslate(!fixture_.settings.translate());
}

void ModelChecker::toggleTranslationOnly() {
  fixture_.settings.setShowTranslationOnly(!fixture_.settings.showTranslationOnly());
}

void ModelChecker::toggleAutoSave() {
  fixture_.settings.setAutoSaveSessions(!fixture_.settings.autoSaveSessions());
}

void ModelChecker::draft() {
  const QString text = isLucky(20) ? QString() : QStringLiteral("draft %1").arg(below(3));
  fixture_.draft(text);
  if (fixture_.model->volatileText() != text) fail("the draft is not shown");
}

FinalEvent ModelChecker::makeFinal() {
  QStringList numbered;
  for (int count = 1 + below(3); count > 0; --count) {
    numbered.append(QStringLiteral("Sentence %1.").arg(++lastNumber_));
  }
  const AudioInput input =
      fixture_.settings.useMic() ? AudioInput::microphone : AudioInput::computer;
  return {numbered.join(QLatin1Char(' ')), fixture_.settings.localeID(), input};
}

void ModelChecker::finalResult() {
  fixture_.recognizer->emitEvent(makeFinal());
  if (!fixture_.model->volatileText().isEmpty()) fail("the draft outlived its final result");
}

void ModelChecker::blankResult() {
  fixture_.final("  \n");
  writtenEnd_.reset();
}

void ModelChecker::prepareLastWords() {
  fixture_.engine->lastWords = {makeFinal()};
}

void ModelChecker::status() {
  fixture_.status(isLucky(50) ? std::optional<QString>("busy") : std::nullopt);
}

void ModelChecker::failureEvent() {
  const bool stops = fixture_.model->isRunning() && !fixture_.model->isSwitching();
  fixture_.failure("Recognition error: scripted");
  if (stops && (fixture_.model->isRunning() || !fixture_.model->isTransitioning())) {
    fail("a failure did not stop the engine");
  }
}

void ModelChecker::expectLines(const SpeechRecognitionEvent& event) {
  const auto* const final = std::get_if<FinalEvent>(&event);
  if (!final) return;
  for (const QString& sentence : final->text.split(QLatin1Char('.'), Qt::SkipEmptyParts)) {
    const QString text = sentence.trimmed();
    if (text.isEmpty()) continue;
    expectedTexts_.append(text + QLatin1Char('.'));
    ++counts_.lines;
  }
}

void ModelChecker::save() {
  const bool isWritten = fixture_.model->saveCurrentSession();
  if (isWritten != (!expectedTexts_.isEmpty() && !isBroken_))
    fail("saving returned the wrong result");
  if (expectedTexts_.isEmpty()) return;
  expectsSaving_ = true;
  if (isWritten) writtenEnd_.reset();
}

void ModelChecker::deleteFile() {
  const std::optional<QUrl> url = fixture_.model->savedURL();
  if (!url || isBroken_) return;
  QFile::remove(url->toLocalFile());
  fixture_.model->savedFileWasDeleted(*url);
  expectsSaving_ = false;
  ++counts_.deletions;
}

void ModelChecker::breakStore() {
  if (isBroken_) return;
  fixture_.breakStore();
  isBroken_ = true;
}

void ModelChecker::repairStore() {
  if (!isBroken_) return;
  fixture_.repairStore();
  isBroken_ = false;
}

void ModelChecker::holdOperations() {
  fixture_.engine->holdsStarts = isLucky(60);
  fixture_.engine->holdsStops = isLucky(40);
  fixture_.engine->downloads = isLucky(40);
}

void ModelChecker::letOperationsPass() {
  fixture_.engine->holdsStarts = false;
  fixture_.engine->holdsStops = false;
}

void ModelChecker::releaseOperation() {
  fixture_.engine->release();
}

void ModelChecker::failOperation() {
  // Only a start can fail.
  if (!fixture_.engine->calls.isEmpty() && fixture_.engine->calls.last().startsWith("start ")) {
    fixture_.engine->fail("scripted failure");
  }
}

void ModelChecker::failNextStart() {
  fixture_.engine->startFailure = "scripted failure";
}

void ModelChecker::prepareTranslation(TranslationScript& script) {
  // Some translators never become ready.
  script.waitsForPreparation = isLucky(10);
  script.cancels = isLucky(50);
  if (!isLucky(40)) return;
  script.translate = [target = script.target](const QString& text) {
    return translationOf(text, target);
  };
}

void ModelChecker::answerTranslation() {
  for (const auto& script : fixture_.translation.scripts) {
    for (const TranslationScript::Request& request : script->requests) {
      if (request.answer.isAnswered() || isLucky(40)) continue;
      if (request.stop.stop_requested()) ++counts_.lateAnswers;
      request.succeed(translationOf(request.text, script->target));
    }
  }
}

void ModelChecker::failTranslation() {
  for (const auto& script : fixture_.translation.scripts) {
    if (!script->requests.empty()) script->requests.back().fail("scripted failure");
  }
}

void ModelChecker::advanceClock() {
  fixture_.clock.advance(std::chrono::milliseconds(1 + below(100'000)));
}

void ModelChecker::loadLanguages() {
  fixture_.tasks.push_back(fixture_.model->loadLanguages());
}

/// Releases every held operation and completes every request: the model must settle, with its
/// lines saved and translated.
void ModelChecker::finish() {
  trail_.append("finish");
  letOperationsPass();
  repairStore();
  for (int round = 0; round < 20; ++round) {
    answerTranslation();
    fixture_.engine->release();
    settle();
  }
  check();
  checkSettled();
  for (const QCoro::Task<>& task : fixture_.tasks) {
    if (!task.isReady()) fail("a task never ends");
  }
  if (!fixture_.model->translator().isActive()) checkTranslatorsClosed();

  fixture_.model->restart();
  settle();
  fixture_.settings.setLocaleID("fr_FR");
  fixture_.settings.setTranslate(false);
  fixture_.translation.prepareScript = {};
  fixture_.translateToUpperCase();
  fixture_.settings.setTranslate(true);
  if (!expectedTexts_.isEmpty() && !fixture_.model->translator().isActive()) {
    return fail("translation cannot be turned on");
  }
  settle();
  for (const Line& line : fixture_.model->lines()) {
    if (line.sourceLanguage == "fr_FR" &&
        !line.translations.contains(fixture_.settings.targetID())) {
      fail("a line was never translated");
    }
  }
}

/// Destroys the model in the middle of its work; it must not emit anything afterwards.
void ModelChecker::destroy() {
  trail_.append("destroy");
  fixture_.model.reset();
  fixture_.takeSignals();
  const Counts before = counts_;
  for (const auto& script : fixture_.translation.scripts) {
    for (const auto& request : script->requests) request.succeed("late");
  }
  fixture_.settings.setUseMic(!fixture_.settings.useMic());
  fixture_.settings.setTranslate(!fixture_.settings.translate());
  letOperationsPass();
  for (int round = 0; round < 5; ++round) {
    fixture_.engine->release();
    settle();
  }
  if (!fixture_.takeSignals().isEmpty() || counts_.translations != before.translations) {
    fail("a destroyed model emitted a signal");
  }
  if (fixture_.engine->isBusy() || fixture_.engine->overlaps > 0) {
    fail("an engine operation never ended");
  }
  for (const QCoro::Task<>& task : fixture_.tasks) {
    if (!task.isReady()) fail("a task outlives its model");
  }
  checkTranslatorsClosed();
}

}  // namespace velun::test
