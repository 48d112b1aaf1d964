// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/speech_recognition_engine.h"

#include "audio/audio_feeder.h"
#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/main_task.h"

#include <exception>
#include <QPointer>

namespace velun {

namespace {

using namespace std::chrono_literals;

constexpr auto kSilenceCheckInterval = 500ms;
/// Without audio for longer than this an unfinished phrase is settled.
constexpr double kLingeringSeconds = 1.0;
/// Without audio for this long the meter falls flat.
constexpr double kMeterSeconds = 0.25;

Failure unsupportedLanguage(const QString& localeID) {
  const QString name = languageName(localeID);
  return Failure(L(name + QStringLiteral(" isn’t a supported language"),
                   name + QStringLiteral("는 지원하지 않는 언어입니다")));
}

}  // namespace

SpeechRecognitionEngine::SpeechRecognitionEngine(SpeechPlatform& speech, AudioPlatform& audio,
                                                 Clock& clock)
    : speech_(speech), audioPlatform_(audio), clock_(clock) {}

SpeechRecognitionEngine::~SpeechRecognitionEngine() {
  cancelAudio_.reset();
  if (audio_) audio_->stop();
  // A stop that still waits for the last results is let go.
  resultsEnd_.complete({});
  forgetRun();
}

QCoro::Task<QStringList> SpeechRecognitionEngine::supportedLocales(SpeechPlatform& speech) {
  return speech.supportedLocales();
}

QCoro::Task<> SpeechRecognitionEngine::start(QString localeID, bool useMic, std::stop_token stop) {
  const QPointer<SpeechRecognitionEngine> self(this);
  shownStatus_.reset();
  Q_EMIT eventOccurred(StatusEvent{});
  const Run run(QUuid::createUuid(), localeID,
                useMic ? AudioInput::microphone : AudioInput::computer);
  engineToken_ = run.token;
  std::exception_ptr error;
  try {
    QCoro::Task<> settingUp = setUp(run, stop);
    co_await settingUp;
  } catch (...) {
    error = std::current_exception();
  }
  if (!error) co_return;
  // A run that was replaced meanwhile has been cleaned up by whoever replaced it.
  if (self && engineToken_ == run.token) {
    QCoro::Task<> cleaningUp = this->stop();
    co_await cleaningUp;
  }
  std::rethrow_exception(error);
}

QCoro::Task<> SpeechRecognitionEngine::setUp(Run run, std::stop_token stop) {
  const QPointer<SpeechRecognitionEngine> self(this);
  QCoro::Task<std::optional<QString>> matching = speech_.supportedLocale(run.sourceID);
  const std::optional<QString> locale = co_await matching;
  if (!locale) throw unsupportedLanguage(run.sourceID);
  checkCancellation(self, run.token, stop);

  const std::shared_ptr<SpeechTranscriber> transcriber = speech_.makeTranscriber(*locale);
  QCoro::Task<std::shared_ptr<AssetInstallationRequest>> asking =
      speech_.assetInstallationRequest(transcriber);
  const std::shared_ptr<AssetInstallationRequest> request = co_await asking;
  checkCancellation(self, run.token, stop);
  if (request) {
    QCoro::Task<> installing = installModel(request, run.token, stop);
    co_await installing;
    checkCancellation(self, run.token, stop);
  }

  QCoro::Task<std::optional<AudioFormat>> choosing = speech_.bestAvailableAudioFormat(transcriber);
  const std::optional<AudioFormat> format = co_await choosing;
  if (!format) {
    throw Failure(L("No audio format available", "사용 가능한 오디오 포맷이 없습니다"));
  }
  checkCancellation(self, run.token, stop);

  const auto input = std::make_shared<AnalyzerInputStream>();
  input_ = input;
  analyzer_ = speech_.makeAnalyzer(transcriber);
  transcriber_ = transcriber;
  listenTo(*transcriber, run);
  QCoro::Task<> starting = analyzer_->start(input);
  co_await starting;
  checkCancellation(self, run.token, stop);

  QCoro::Task<> startingAudio = startAudio(*format, run, stop);
  co_await startingAudio;
  checkCancellation(self, run.token, stop);
  checkSilenceLater(run.token);
}

QCoro::Task<> SpeechRecognitionEngine::installModel(
    std::shared_ptr<AssetInstallationRequest> request, QUuid token, std::stop_token stop) {
  const QPointer<SpeechRecognitionEngine> self(this);
  Q_EMIT eventOccurred(StatusEvent{L("Downloading speech model…", "음성 모델 다운로드 중…")});
  QCoro::Task<> installing = request->downloadAndInstall(stop);
  co_await installing;
  if (self && engineToken_ == token) Q_EMIT eventOccurred(StatusEvent{});
}

void SpeechRecognitionEngine::checkCancellation(const QPointer<SpeechRecognitionEngine>& engine,
                                                QUuid token, const std::stop_token& stop) {
  if (!engine || engine->engineToken_ != token || stop.stop_requested()) throw Cancelled();
}

void SpeechRecognitionEngine::listenTo(SpeechTranscriber& transcriber, const Run& run) {
  resultsEnd_ = {};
  transcriber.onResult = [this, run](const TranscriptionResult& result) {
    if (engineToken_ == run.token) handle(result, run);
  };
  transcriber.onEnd = [this, token = run.token](const std::optional<QString>& error) {
    resultsEnded(error, token);
  };
  transcriber.onFallingBehind = [this, token = run.token](bool isBehind) {
    if (engineToken_ != token) return;
    isFallingBehind_ = isBehind;
    updateStatus();
  };
}

QCoro::Task<> SpeechRecognitionEngine::startAudio(AudioFormat format, Run run,
                                                  std::stop_token stop) {
  feeder_ = std::make_unique<AudioFeeder>(format, input_, clock_);
  AudioTarget target;
  target.kind =
      run.input == AudioInput::microphone ? AudioTarget::Kind::input : AudioTarget::Kind::output;
  audio_ = audioPlatform_.makeSource(target);
  followSource(*audio_, run.token);
  cancelAudio_.emplace(std::move(stop), [source = audio_.get()] { source->stop(); });
  AudioSource::Handler feed = [feeder = feeder_.get()](const PcmBuffer& buffer) {
    feeder->feed(buffer);
  };
  return audio_->start(std::move(feed));
}

void SpeechRecognitionEngine::followSource(const AudioSource& source, QUuid token) {
  const auto setInterrupted = [this, token](bool isInterrupted) {
    if (engineToken_ != token) return;
    isInterrupted_ = isInterrupted;
    updateStatus();
  };
  connect(&source, &AudioSource::interrupted, this, [setInterrupted] { setInterrupted(true); });
  connect(&source, &AudioSource::resumed, this, [setInterrupted] { setInterrupted(false); });
  connect(&source, &AudioSource::failed, this, [this, token](const QString& message) {
    if (engineToken_ == token) fail(message);
  });
}

void SpeechRecognitionEngine::handle(const TranscriptionResult& result, const Run& run) {
  const QString text = result.text.trimmed();
  if (!result.isFinal) {
    volatileText_ = text;
    Q_EMIT eventOccurred(DraftEvent{text});
    return;
  }
  volatileText_.clear();
  if (text.isEmpty()) {
    Q_EMIT eventOccurred(DraftEvent{});
  } else {
    Q_EMIT eventOccurred(FinalEvent{text, run.sourceID, run.input});
  }
}

void SpeechRecognitionEngine::resultsEnded(const std::optional<QString>& error, QUuid token) {
  if (engineToken_ != token) return;
  resultsEnd_.complete({});
  if (!error) return;
  fail(L(QStringLiteral("Recognition error: ") + *error, QStringLiteral("인식 오류: ") + *error));
}

void SpeechRecognitionEngine::checkSilenceLater(QUuid token) {
  silenceCheck_ = clock_.callAfter(kSilenceCheckInterval, [this, token] {
    startTask(this, [this, token] { return checkSilence(token); });
  });
}

QCoro::Task<> SpeechRecognitionEngine::checkSilence(QUuid token) {
  const QPointer<SpeechRecognitionEngine> self(this);
  if (engineToken_ != token || !feeder_) co_return;
  const double silence = clock_.monotonicSeconds() - feeder_->lastFeed();
  if (!volatileText_.isEmpty() && silence > kLingeringSeconds) {
    try {
      QCoro::Task<> settling = analyzer_->finalizeThroughEndOfInputSoFar();
      co_await settling;
    } catch (const std::exception&) {
      // The results end with the same error, which is reported there.
    }
    if (!self || engineToken_ != token || !feeder_) co_return;
  }
  checkSilenceLater(token);
}

QCoro::Task<> SpeechRecognitionEngine::stop() {
  const QPointer<SpeechRecognitionEngine> self(this);
  silenceCheck_.reset();
  cancelAudio_.reset();
  if (audio_) audio_->stop();
  audio_.reset();
  // Nobody waits for the sound system any more.
  isInterrupted_ = false;
  updateStatus();
  bool hasFedAudio = false;
  if (input_) input_->finish();
  if (feeder_) hasFedAudio = feeder_->hasFedAudio();
  feeder_.reset();

  // The engine may be destroyed, or stopped a second time, while this waits; the analyzer ends with
  // it then, so that no thread outlives the program's own end.
  const QUuid token = engineToken_;
  if (analyzer_) {
    const OneShot<std::monostate> resultsEnd = resultsEnd_;
    try {
      if (hasFedAudio) {
        QCoro::Task<> finishing = analyzer_->finalizeAndFinishThroughEndOfInput();
        co_await finishing;
      } else {
        QCoro::Task<> cancelling = analyzer_->cancelAndFinishNow();
        co_await cancelling;
      }
    } catch (const std::exception&) {
      // What could not be settled is lost; the run ends all the same.
    }
    if (hasFedAudio) co_await resultsEnd;
  }
  if (self && engineToken_ == token) forgetRun();
}

void SpeechRecognitionEngine::forgetRun() {
  if (transcriber_) {
    transcriber_->onResult = nullptr;
    transcriber_->onEnd = nullptr;
    transcriber_->onFallingBehind = nullptr;
  }
  transcriber_.reset();
  analyzer_.reset();
  input_.reset();
  engineToken_ = QUuid::createUuid();
  volatileText_.clear();
  isInterrupted_ = false;
  isFallingBehind_ = false;
  shownStatus_.reset();
}

std::vector<float> SpeechRecognitionEngine::meterBands() const {
  if (!feeder_ || clock_.monotonicSeconds() - feeder_->lastFeed() >= kMeterSeconds) return {};
  return feeder_->bands();
}

void SpeechRecognitionEngine::updateStatus() {
  std::optional<QString> status;
  if (isInterrupted_) {
    status = L("The sound system is not responding. Captions will go on when it is back.",
               "사운드 시스템이 응답하지 않습니다. 복구되면 자막이 계속됩니다.");
  } else if (isFallingBehind_) {
    status = L("Recognition is falling behind", "인식이 늦어지고 있습니다");
  }
  if (status == shownStatus_) return;
  shownStatus_ = status;
  Q_EMIT eventOccurred(StatusEvent{status});
}

/// The message takes the place of any status.
void SpeechRecognitionEngine::fail(const QString& message) {
  isInterrupted_ = false;
  isFallingBehind_ = false;
  shownStatus_.reset();
  Q_EMIT eventOccurred(FailureEvent{message});
}

}  // namespace velun
