// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/neural_recognizer_provider.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/language_identifier.h"
#include "platform/speech/built_in/built_in_backend.h"
#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/sherpa_library.h"
#include "platform/speech/helper/vosk_library.h"
#include "platform/speech/neural/english_backend.h"
#include "platform/speech/neural/model_settings.h"
#include "platform/speech/neural/neural_backend.h"

#include <algorithm>
#include <optional>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <thread>

namespace velun {

namespace {

/// Half of the cores, to leave the others to the rest of the system; more than four threads do not
/// make decoding faster.
int decodeThreads() {
  return std::clamp(static_cast<int>(std::thread::hardware_concurrency()) / 2, 1, 4);
}

/// Downloads a recognition model and, if it writes no punctuation, a punctuation model. A failure
/// of the second does not prevent captions.
class ModelOffer final : public SpeechModelOffer {
 public:
  ModelOffer(ModelStore& store, Model model, std::optional<Model> marks)
      : store_(&store), model_(std::move(model)), marks_(std::move(marks)) {}

  qint64 downloadBytes() const override {
    return model_.downloadBytes() + (marks_ ? marks_->downloadBytes() : 0);
  }
  QCoro::Task<> install(std::stop_token stop) override {
    const QPointer<ModelStore> store = store_;
    const std::optional<Model> marks = marks_;
    const Model model = model_;
    QCoro::Task<> installation = store->install(model, stop);
    co_await installation;
    if (!marks || !store) co_return;
    QCoro::Task<> second = installMarks(store, *marks, stop);
    co_await second;
  }

 private:
  static QCoro::Task<> installMarks(QPointer<ModelStore> store, Model marks, std::stop_token stop) {
    try {
      QCoro::Task<> installation = store->install(marks, stop);
      co_await installation;
    } catch (const Cancelled&) {
      throw;
    } catch (const Failure&) {
      // Captions without punctuation are better than none.
    }
  }

  QPointer<ModelStore> store_;
  Model model_;
  std::optional<Model> marks_;
};

}  // namespace

NeuralRecognizerProvider::NeuralRecognizerProvider(ModelCatalogue catalogue, ModelStore& store,
                                                   QString program,
                                                   std::shared_ptr<const CaptionStyle> style,
                                                   SpeedReport reportSpeed,
                                                   std::shared_ptr<PunctuationProvider> punctuation)
    : catalogue_(std::move(catalogue)),
      store_(store),
      program_(std::move(program)),
      helper_(program_),
      library_(sherpa::versionBeside(sherpa::findLibrary(QFileInfo(program_).path()))),
      vosk_(vosk::findLibrary(QFileInfo(program_).path())),
      style_(std::move(style)),
      reportSpeed_(std::move(reportSpeed)),
      punctuation_(std::move(punctuation)) {}

QString NeuralRecognizerProvider::installedProgram() {
  const QString folder = QCoreApplication::applicationDirPath();
  const QString program = folder + "/velun-recognizer";
  const bool isThere = QFileInfo(program).isExecutable();
  return isThere && !sherpa::findLibrary(folder).isEmpty() ? program : QString();
}

std::vector<const Model*> NeuralRecognizerProvider::models(const QString& locale) const {
  std::vector<const Model*> found;
  if (program_.isEmpty()) return found;
  for (const Model& model : catalogue_.models()) {
    if (model.kind == ModelKind::recognition && !obstacle(model) &&
        model.options["locales"].toVariant().toStringList().contains(locale)) {
      found.push_back(&model);
    }
  }
  return found;
}

QStringList NeuralRecognizerProvider::supportedLocales() const {
  QStringList locales;
  if (program_.isEmpty()) return locales;
  for (const Model& model : catalogue_.models()) {
    if (model.kind != ModelKind::recognition || obstacle(model)) continue;
    locales += model.options["locales"].toVariant().toStringList();
  }
  locales.removeDuplicates();
  return locales;
}

std::vector<RecognizerCandidate> NeuralRecognizerProvider::candidates(const QString& locale) const {
  std::vector<RecognizerCandidate> all;
  for (const Model* model : models(locale)) {
    RecognizerCandidate candidate;
    candidate.id = model->id;
    candidate.title = model->title;
    candidate.model = model->id;
    candidate.isInstalled = store_.isInstalled(*model);
    candidate.modelBytes = model->installedBytes;
    candidate.memoryBytes = model->memoryBytes;
    const Model* marks = catalogue_.punctuationFor(*model, languageCode(locale));
    candidate.needsAgreement =
        !model->licenceNotice.isEmpty() || (marks && !marks->licenceNotice.isEmpty());
    const bool isSentenceWritten =
        punctuation_ && runsInVosk(*model) && languageCode(locale) == QLatin1String("en");
    candidate.getsPunctuation = marks || isSentenceWritten;
    all.push_back(candidate);
  }
  return all;
}

RecognizerSettings NeuralRecognizerProvider::settings(const Model& model,
                                                      const QString& locale) const {
  RecognizerSettings settings = modelSettings(model, store_.folder(model), locale);
  settings.threads = decodeThreads();
  settings.userWords = style_->userWords;
  if (runsInVosk(model)) settings.voskLibrary = vosk_;
  addPunctuation(settings, catalogue_.punctuationFor(model, languageCode(locale)));
  return settings;
}

std::optional<QString> NeuralRecognizerProvider::obstacle(const Model& model) const {
  if (runsInVosk(model) && vosk_.isEmpty()) {
    return L(
        QString("“%1” needs libvosk, which Velun has only on x86-64 processors.").arg(model.title),
        QString("‘%1’에는 libvosk가 필요하며, Velun은 이를 x86-64 프로세서에서만 제공합니다.")
            .arg(model.title));
  }
  const QVersionNumber needed = minimumLibrary(model);
  if (library_.isNull() || library_ >= needed) return std::nullopt;
  return L(QString("“%1” needs sherpa-onnx %2 or newer. Install the latest version of Velun.")
               .arg(model.title, needed.toString()),
           QString("‘%1’에는 sherpa-onnx %2 이상이 필요합니다. 최신 버전의 Velun을 설치하세요.")
               .arg(model.title, needed.toString()));
}

void NeuralRecognizerProvider::addPunctuation(RecognizerSettings& settings,
                                              const Model* marks) const {
  if (!marks || !store_.isInstalled(*marks)) return;
  const QDir folder(store_.folder(*marks));
  settings.punctuationModel = folder.filePath(marks->options["model"].toString());
  settings.punctuationVocabulary = folder.filePath(marks->options["vocabulary"].toString());
}

bool NeuralRecognizerProvider::isBeingCompleted(const QString& locale, const QString& id) const {
  const Model* model = catalogue_.find(id);
  const Model* marks = model ? catalogue_.punctuationFor(*model, languageCode(locale)) : nullptr;
  return marks && store_.state(*marks).isBusy();
}

RecognizerProvider::Factory NeuralRecognizerProvider::makeFactory(const QString& locale,
                                                                  const QString& id) const {
  RecognizerSettings settings;
  QStringList models;
  if (const Model* model = catalogue_.find(id)) {
    settings = this->settings(*model, locale);
    models << id;
    const Model* marks = catalogue_.punctuationFor(*model, languageCode(locale));
    if (marks) models << marks->id;
  }
  // The recognizer keeps its report, which protects the models from being removed.
  const MakeReport makeReport = [report = reportSpeed_, id, models, store = store_.uses()] {
    std::vector<std::shared_ptr<const void>> uses;
    for (const QString& each : models) uses.push_back(store->use(each));
    return [report, id, uses](double realTimeFactor) {
      report(id, realTimeFactor);
    };
  };
  const bool isEnglish = settings.language == QLatin1String("en");
  if (isEnglish && settings.usesVosk()) return voskEnglishFactory(locale, settings, makeReport);
  return [program = helper_, settings, style = style_, makeReport,
          isEnglish]() -> std::unique_ptr<RecognizerBackend> {
    auto recognizer = std::make_unique<NeuralBackend>(program, settings,
                                                      HelperProcess::kDefaultTimeout, makeReport());
    if (!isEnglish) return recognizer;
    return std::make_unique<EnglishBackend>(std::move(recognizer), style);
  };
}

RecognizerProvider::Factory NeuralRecognizerProvider::voskEnglishFactory(
    const QString& locale, RecognizerSettings settings, MakeReport makeReport) const {
  settings.language.clear();
  PunctuationRestorer::Factory marks;
  if (punctuation_) marks = punctuation_->punctuationFactory(locale);
  return [program = helper_, settings = std::move(settings), style = style_, marks,
          makeReport = std::move(makeReport)]() -> std::unique_ptr<RecognizerBackend> {
    return std::make_unique<BuiltInBackend>(program, settings, marks ? marks() : nullptr, style,
                                            makeReport());
  };
}

std::shared_ptr<SpeechModelOffer> NeuralRecognizerProvider::offer(const QString& locale,
                                                                  const QString& id) {
  const Model* model = catalogue_.find(id);
  if (!model || program_.isEmpty()) return nullptr;
  std::optional<Model> marks;
  if (const Model* found = catalogue_.punctuationFor(*model, languageCode(locale))) marks = *found;
  return std::make_shared<ModelOffer>(store_, *model, marks);
}

}  // namespace velun
