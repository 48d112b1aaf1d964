// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/speech_recognition_engine.h"

#include "audio/audio_feeder.h"
#include "audio/echo_canceller.h"
#include "audio/start_failure.h"
#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/main_task.h"

#include <exception>
#include <QPointer>

namespace velun {

namespace {

using namespace std::chrono_literals;

constexpr auto kSilenceCheckInterval = 500ms;
/// Seconds without audio after which an unfinished phrase is finalized.
constexpr double kMaxSilenceInPhrase = 1.0;
/// Seconds without audio after which the level meter is empty.
constexpr double kMeterTimeout = 0.25;

Failure unsupportedLanguage(const QString& localeID) {
  const QString name = languageName(localeID);
  return Failure(L(name + QStringLiteral(" isn’t a supported language"),
                   name + QStringLiteral("는 지원하지 않는 언어입니다")));
}

Failure licenceToAgreeTo(const QString& localeID) {
  return Failure(
      L("Captions in %1 need a model whose license is not clear. Read it in Settings, under "
        "Languages & Models, and install the model there.",
        "%1 자막에는 라이선스가 명확하지 않은 모델이 필요합니다. 설정의 ‘언어 및 모델’에서 내용을 "
        "읽고 모델을 설치하세요.")
          .arg(languageName(localeID)));
}

/// The error of a start at that stage; a cancellation stays one.
std::exception_ptr startError(const std::exception_ptr& error, FailureStage stage) {
  try {
    std::rethrow_exception(error);
  } catch (const Cancelled&) {
    return error;
  } catch (const std::exception& failure) {
    return std::make_exception_ptr(StartFailure(descriptionOf(failure), stage));
  }
}

/// `next`, with what the computer plays going to `echo` and a microphone's samples through it.
/// `echo` must outlive the handler.
AudioSource::Handler withEcho(AudioSource::Handler next, EchoCanceller& echo, AudioInput input) {
  if (input == AudioInput::microphone) {
    return [next = std::move(next), &echo](std::span<const float> samples) {
      next(echo.withoutEcho(samples));
    };
  }
  return [next = std::move(next), &echo](std::span<const float> samples) {
    echo.addPlayed(samples);
    next(samples);
  };
}

}  // namespace

SpeechRecognitionEngine::SpeechRecognitionEngine(SpeechPlatform& speech, AudioPlatform& audio,
                                                 Clock& clock, std::shared_ptr<EchoCanceller> echo,
                                                 std::chrono::milliseconds finishTimeout)
    : speech_(speech),
      audioPlatform_(audio),
      clock_(clock),
      echo_(std::move(echo)),
      finishLimit_(finishTimeout),
      status_(clock) {
  connect(&status_, &RunStatus::changed, this,
          [this](const std::optional<QString>& text) { Q_EMIT eventOccurred(StatusEvent{text}); });
}

SpeechRecognitionEngine::~SpeechRecognitionEngine() {
  cancelAudio_.reset();
  if (audio_) audio_->stop();
}

QCoro::Task<> SpeechRecognitionEngine::start(QString localeID, CaptionTargets targets,
                                             std::stop_token stop) {
  const QPointer<SpeechRecognitionEngine> self(this);
  status_.forget();
  Q_EMIT eventOccurred(StatusEvent{});
  const Run run(QUuid::createUuid(), localeID, targets.first());
  engineToken_ = run.token;
  isStarting_ = true;
  startFailure_.reset();
  std::exception_ptr error;
  try {
    QCoro::Task<> settingUp = setUp(run, stop);
    co_await settingUp;
  } catch (...) {
    error = std::current_exception();
  }
  const bool isCurrent = self && engineToken_ == run.token;
  if (isCurrent) {
    isStarting_ = false;
    if (startFailure_) {
      error = std::make_exception_ptr(StartFailure(startFailure_->message, startFailure_->stage));
    } else if (error) {
      error = startError(error, startStage_);
    }
  }
  if (!error) co_return;
  // If the run was replaced meanwhile, `stop` has already cleaned it up.
  if (isCurrent) {
    QCoro::Task<> cleaningUp = this->stop();
    co_await cleaningUp;
  }
  std::rethrow_exception(error);
}

QCoro::Task<> SpeechRecognitionEngine::setUp(Run run, std::stop_token stop) {
  const QPointer<SpeechRecognitionEngine> self(this);
  startStage_ = FailureStage::recognition;
  const std::optional<SpeechSupport> support = speech_.support(run.sourceID);
  if (!support) throw unsupportedLanguage(run.sourceID);
  checkCancellation(self, run.token, stop);
  if (support->needsAgreement) throw licenceToAgreeTo(run.sourceID);
  if (support->offer) {
    startStage_ = FailureStage::download;
    QCoro::Task<> installing = installModel(support->offer, run.token, stop);
    co_await installing;
    checkCancellation(self, run.token, stop);
  }
  startStage_ = FailureStage::recognition;
  startRecognition(support->locale, run);
  startStage_ = FailureStage::sound;
  QCoro::Task<> startingAudio = startAudio(run, stop);
  co_await startingAudio;
  checkCancellation(self, run.token, stop);
  checkSilenceLater(run.token);
}

QCoro::Task<> SpeechRecognitionEngine::installModel(std::shared_ptr<SpeechModelOffer> offer,
                                                    QUuid token, std::stop_token stop) {
  const QPointer<SpeechRecognitionEngine> self(this);
  setDownloading(true);
  std::exception_ptr error;
  try {
    QCoro::Task<> installing = offer->install(stop);
    co_await installing;
  } catch (...) {
    error = std::current_exception();
  }
  if (self && engineToken_ == token) setDownloading(false);
  if (error) std::rethrow_exception(error);
}

void SpeechRecognitionEngine::setDownloading(bool isDownloading) {
  if (std::exchange(isDownloading_, isDownloading) == isDownloading) return;
  std::optional<QString> status;
  if (isDownloading) status = L("Downloading speech model…", "음성 모델 다운로드 중…");
  Q_EMIT eventOccurred(StatusEvent{status});
  Q_EMIT isDownloadingChanged();
}

void SpeechRecognitionEngine::checkCancellation(const QPointer<SpeechRecognitionEngine>& engine,
                                                QUuid token, const std::stop_token& stop) {
  if (!engine || engine->engineToken_ != token || stop.stop_requested()) throw Cancelled();
}

void SpeechRecognitionEngine::startRecognition(const QString& locale, const Run& run) {
  input_ = std::make_shared<SpeechInput>();
  recognition_ = speech_.start(locale, input_);
  run_ = run;
  connect(recognition_.get(), &SpeechRun::resultReady, this, &SpeechRecognitionEngine::handle);
  followStatus(*recognition_);
  connect(recognition_.get(), &SpeechRun::ended, this, [this](const std::optional<QString>& error) {
    if (!error) return;
    const QString text =
        L(QStringLiteral("Recognition error: ") + *error, QStringLiteral("인식 오류: ") + *error);
    fail({text, FailureStage::recognition});
  });
}

/// During a stop, the texts of the status would outlive the captions.
void SpeechRecognitionEngine::followStatus(const SpeechRun& recognition) {
  connect(&recognition, &SpeechRun::noticed, this, [this](const QString& notice) {
    if (audio_) status_.setNotice(notice);
  });
  connect(&recognition, &SpeechRun::noticedBriefly, this, [this](const QString& notice) {
    if (audio_) status_.showBriefly(notice);
  });
  connect(&recognition, &SpeechRun::lagChanged, this, [this](bool isBehind) {
    if (audio_) status_.setBehind(isBehind);
  });
  connect(&recognition, &SpeechRun::skipped, this, [this](double seconds) {
    if (audio_) status_.addSkipped(seconds);
  });
  connect(&recognition, &SpeechRun::tooSlow, this, [this](const QString& advice) {
    if (!audio_) return;
    status_.advise(advice);
    Q_EMIT tooSlow();
  });
}

QCoro::Task<> SpeechRecognitionEngine::startAudio(Run run, std::stop_token stop) {
  feeder_ = std::make_unique<AudioFeeder>(input_, clock_);
  audio_ = audioPlatform_.makeSource(run.target);
  followSource(*audio_, run.token);
  cancelAudio_.emplace(std::move(stop), [source = audio_.get()] { source->stop(); });
  AudioSource::Handler feed = [feeder = feeder_.get()](std::span<const float> samples) {
    feeder->feed(samples);
  };
  if (echo_) feed = withEcho(std::move(feed), *echo_, run.input());
  return audio_->start(std::move(feed));
}

void SpeechRecognitionEngine::followSource(const AudioSource& source, QUuid token) {
  const auto setInterrupted = [this, token](bool isInterrupted) {
    if (engineToken_ == token) status_.setInterrupted(isInterrupted);
  };
  connect(&source, &AudioSource::interrupted, this, [setInterrupted] { setInterrupted(true); });
  connect(&source, &AudioSource::resumed, this, [setInterrupted] { setInterrupted(false); });
  const auto setMissing = [this, token](bool isMissing) {
    if (engineToken_ == token) setDeviceMissing(isMissing);
  };
  connect(&source, &AudioSource::deviceMissing, this, [setMissing] { setMissing(true); });
  connect(&source, &AudioSource::deviceFound, this, [setMissing] { setMissing(false); });
  connect(&source, &AudioSource::failed, this, [this, token](const QString& message) {
    if (engineToken_ == token) fail({message, FailureStage::sound});
  });
}

void SpeechRecognitionEngine::setDeviceMissing(bool isMissing) {
  if (std::exchange(isDeviceMissing_, isMissing) == isMissing) return;
  const AudioTarget& target = run_->target;
  const QString& name = target.name.isEmpty() ? target.id : target.name;
  status_.setMissingDevice(isMissing ? std::optional(name) : std::nullopt);
  Q_EMIT missingInputChanged();
}

std::optional<AudioInput> SpeechRecognitionEngine::missingInput() const {
  return isDeviceMissing_ ? std::optional(run_->input()) : std::nullopt;
}

void SpeechRecognitionEngine::handle(const TranscriptionResult& result) {
  const QString text = result.text.trimmed();
  if (!result.isFinal) {
    if (volatileText_.isEmpty()) draftedSince_ = clock_.monotonicSeconds();
    volatileText_ = text;
    Q_EMIT eventOccurred(DraftEvent{text, run_->input()});
    return;
  }
  volatileText_.clear();
  if (text.isEmpty()) {
    Q_EMIT eventOccurred(DraftEvent{{}, run_->input()});
  } else {
    FinalEvent event{text, run_->sourceID, run_->input()};
    if (result.spoken)
      event.spoken = {wallTime(result.spoken->start), wallTime(result.spoken->end)};
    event.voice = result.voice;
    Q_EMIT eventOccurred(event);
  }
}

Instant SpeechRecognitionEngine::wallTime(double monotonicSeconds) const {
  const std::chrono::duration<double> ago(clock_.monotonicSeconds() - monotonicSeconds);
  return clock_.now() - std::chrono::round<Instant::duration>(ago);
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
  if (!volatileText_.isEmpty() && silence > kMaxSilenceInPhrase) {
    QCoro::Task<> settling = recognition_->settle();
    co_await settling;
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
  status_.clear();
  setDeviceMissing(false);
  bool hasFedAudio = false;
  if (input_) input_->finish();
  if (feeder_) hasFedAudio = feeder_->hasFedAudio();
  feeder_.reset();

  const QUuid token = engineToken_;
  if (recognition_ && hasFedAudio) {
    QCoro::Task<> finishing = finishRecognition();
    co_await finishing;
  } else {
    QCoro::Task<> cancelling = cancelRecognition();
    co_await cancelling;
  }
  // The engine may have been destroyed or stopped a second time meanwhile.
  if (self && engineToken_ == token) forgetRun();
}

QCoro::Task<> SpeechRecognitionEngine::finishRecognition() {
  finishTimeout_ = clock_.callAfter(finishLimit_, [this] { giveUpUndecoded(); });
  return recognition_->finish();
}

/// The draft becomes final, because the recognizer will not finish it in time.
void SpeechRecognitionEngine::giveUpUndecoded() {
  if (!volatileText_.isEmpty()) {
    TranscriptionResult draft{volatileText_, true};
    draft.spoken = SpokenSpan{draftedSince_, clock_.monotonicSeconds()};
    handle(draft);
  }
  const QString text = L("Captions stopped before the last words were recognized.",
                         "마지막 말이 인식되기 전에 자막이 중지되었습니다.");
  fail({text, FailureStage::recognition});
  startTask(this, [this] { return cancelRecognition(); });
}

QCoro::Task<> SpeechRecognitionEngine::cancelRecognition() {
  // It may have ended meanwhile.
  if (!recognition_) co_return;
  QCoro::Task<> cancelling = recognition_->cancel();
  co_await cancelling;
}

void SpeechRecognitionEngine::forgetRun() {
  finishTimeout_.reset();
  recognition_.reset();
  input_.reset();
  engineToken_ = QUuid::createUuid();
  isStarting_ = false;
  setDownloading(false);
  volatileText_.clear();
  status_.forget();
}

std::vector<float> SpeechRecognitionEngine::meterBands() const {
  if (!feeder_ || clock_.monotonicSeconds() - feeder_->lastFeed() >= kMeterTimeout) return {};
  return feeder_->bands();
}

/// Replaces any status. During a start, it becomes the failure of the start.
void SpeechRecognitionEngine::fail(const FailureEvent& failure) {
  if (isStarting_) {
    startFailure_ = failure;
    if (audio_) audio_->stop();
    return;
  }
  status_.forget();
  Q_EMIT eventOccurred(failure);
}

}  // namespace velun
