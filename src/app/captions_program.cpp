// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/captions_program.h"

#include "app/engine_services.h"
#include "captions/caption_target.h"
#include "captions/missing_models.h"
#include "captions/recording_source.h"
#include "cli/caption_devices.h"
#include "cli/captions_command.h"
#include "cli/live_source.h"
#include "language/localization.h"
#include "platform/desktop/linux/termination_signals.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/file_preferences.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <QCoreApplication>
#include <QHash>
#include <unistd.h>

namespace velun {

namespace {

/// In a terminal or a file, the last words are worth the wait. A second Ctrl+C ends it.
constexpr std::chrono::seconds kFinishTimeout{20};

/// The user's preferences, which a run of the command does not change: the program with windows may
/// be running too.
class UnchangedPreferences final : public PreferenceStore {
 public:
  std::optional<PreferenceValue> value(const QString& key) const override {
    const auto own = own_.constFind(key);
    return own == own_.constEnd() ? file_.value(key) : std::optional(*own);
  }
  void set(const QString& key, PreferenceValue value) override { own_[key] = std::move(value); }

 private:
  FilePreferences file_{FilePreferences::userPath()};
  QHash<QString, PreferenceValue> own_;
};

/// The locale that the recognizers know. Throws `Failure`.
QString supportedLocale(EngineServices& services, const QString& wanted) {
  const std::optional<SpeechSupport> support = services.speech.support(wanted);
  if (!support) {
    throw Failure(
        L("There is no recognizer for “%1”.", "“%1” 언어의 인식기가 없습니다.").arg(wanted));
  }
  return support->locale;
}

/// One a line: the name for --model, whether it is installed, and the title.
void listModels(EngineServices& services, const QString& localeID) {
  const QString locale = supportedLocale(services, localeID);
  for (const RecognizerCandidate& candidate : services.speech.candidates(locale)) {
    const QString state =
        candidate.isInstalled ? L("installed", "설치됨") : L("not installed", "설치되지 않음");
    std::printf("%s\t%s\t%s\n", qUtf8Printable(candidate.id), qUtf8Printable(state),
                qUtf8Printable(candidate.title));
  }
}

void listDevices(EngineServices& services) {
  const QString list = deviceList(currentDevices(services.audio, services.clock));
  if (list.isEmpty())
    throw Failure(L("The sound server (PipeWire) names no device.",
                    "사운드 서버(PipeWire)에 장치가 없습니다."));
  std::fputs(qUtf8Printable(list), stdout);
}

/// Throws `Failure` when what is asked for is not installed: nothing is downloaded unasked.
void checkInstalled(EngineServices& services, const CaptionArguments& arguments,
                    const QString& localeID) {
  const QString locale = supportedLocale(services, localeID);
  const std::vector<RecognizerCandidate> candidates = services.speech.candidates(locale);
  const auto isWanted = [&arguments](const RecognizerCandidate& candidate) {
    return arguments.model.isEmpty() || candidate.id == arguments.model;
  };
  if (std::none_of(candidates.begin(), candidates.end(), isWanted)) {
    throw Failure(L("There is no recognizer “%1” for this language; --list-models shows them.",
                    "이 언어에는 “%1” 인식기가 없습니다. --list-models로 볼 수 있습니다.")
                      .arg(arguments.model));
  }
  const auto isReady = [&](const RecognizerCandidate& candidate) {
    return isWanted(candidate) && candidate.isInstalled;
  };
  if (std::none_of(candidates.begin(), candidates.end(), isReady)) {
    throw Failure(missingRecognizerText());
  }
  if (arguments.target.isEmpty()) return;
  const auto missing = missingTranslation(services.translation, localeID, arguments.target);
  if (missing) throw Failure(*missing);
}

/// A device is that of the microphone only if the computer's sound is not captioned.
CaptionTargets liveTargets(const CaptionArguments& arguments,
                           const std::vector<AudioTarget>& devices) {
  const AudioTarget microphone{.kind = AudioTarget::Kind::input, .id = {}, .name = {}};
  const bool isMicrophone = arguments.input == InputChoice::microphone;
  const AudioInput named = isMicrophone ? AudioInput::microphone : AudioInput::computer;
  const bool isOfProgram = arguments.program.scope != ProgramChoice::Scope::all;
  const AudioTarget chosen =
      isOfProgram ? targetOf(arguments.program) : deviceNamed(arguments.device, named, devices);
  if (arguments.input == InputChoice::both) return {chosen, microphone};
  return chosen;
}

std::unique_ptr<CaptionSource> makeSource(EngineServices& services,
                                          const CaptionArguments& arguments,
                                          const QString& localeID, Instant start) {
  if (!arguments.recording) {
    std::vector<AudioTarget> devices;
    if (!arguments.device.isEmpty()) devices = currentDevices(services.audio, services.clock);
    return std::make_unique<LiveSource>(services.makeLiveEngine(kFinishTimeout), localeID,
                                        liveTargets(arguments, devices));
  }
  const QString path = arguments.recording == QLatin1String("-") ? RecordingStream::standardInput()
                                                                 : *arguments.recording;
  return services.makeRecordingSource(path, localeID, start, arguments.showsDrafts);
}

int caption(EngineServices& services, const CaptionArguments& arguments, const QString& localeID) {
  checkInstalled(services, arguments, localeID);
  if (!arguments.model.isEmpty()) {
    services.recognizerPreferences->setChoice(supportedLocale(services, localeID), arguments.model);
  }
  CaptionSession session;
  session.startedAt = services.clock.now();
  if (!arguments.recording && arguments.input == InputChoice::both) {
    session.computerName = services.settings.inputName(AudioInput::computer);
    session.microphoneName = services.settings.inputName(AudioInput::microphone);
  }
  const auto printer = makeLinePrinter(arguments, stdout, session.startedAt, session);
  auto source = makeSource(services, arguments, localeID, session.startedAt);
  CaptionsCommand command(arguments, localeID, std::move(session), std::move(source),
                          {services.translation, services.clock, *printer, stdout, stderr});
  TerminationSignals signals;
  QObject::connect(&signals, &TerminationSignals::received, &command, &CaptionsCommand::interrupt);
  QObject::connect(&command, &CaptionsCommand::finished, qApp,
                   [](int status) { QCoreApplication::exit(status); });
  command.start();
  return QCoreApplication::exec();
}

int run() {
  UnchangedPreferences preferences;
  Localization::shared().load(preferences);
  try {
    const CaptionArguments arguments =
        parseCaptionArguments(QCoreApplication::arguments().sliced(2));
    EngineServices services(preferences);
    const QString localeID =
        arguments.localeID.isEmpty() ? services.settings.localeID() : arguments.localeID;
    if (arguments.listsDevices) {
      listDevices(services);
    } else if (arguments.listsModels) {
      listModels(services, localeID);
    } else {
      return caption(services, arguments, localeID);
    }
    return CaptionsCommand::kDone;
  } catch (const HelpRequested& help) {
    std::fputs(qUtf8Printable(help.text), stdout);
    return CaptionsCommand::kDone;
  } catch (const UsageError& error) {
    std::fprintf(stderr, "velun: %s\n%s\n", error.what(),
                 qUtf8Printable(L("“velun captions --help” shows the options.",
                                  "옵션은 “velun captions --help”로 볼 수 있습니다.")));
    return CaptionsCommand::kUsage;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "velun: %s\n", qUtf8Printable(descriptionOf(error)));
    return CaptionsCommand::kFailed;
  }
}

/// Without it, a file that the program opens would take the place of a standard stream that is
/// closed, and captions would be written into it. Writing still fails, as it should.
void occupyClosedStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(stream, F_GETFD) < 0) ::open("/dev/null", O_RDONLY);
  }
}

/// What was printed last, such as a list, may not have been written yet.
int statusAfterFlush(int status) {
  if (status != CaptionsCommand::kDone || std::fflush(stdout) == 0) return status;
  std::fprintf(stderr, "velun: %s\n", qUtf8Printable(unwrittenText(errno)));
  return CaptionsCommand::kFailed;
}

}  // namespace

int runCaptionsProgram(int argc, char** argv) {
  occupyClosedStreams();
  QCoreApplication application(argc, argv);
  const int status = statusAfterFlush(run());
  // The services have ended what tasks still waited for; those go on, which frees them.
  QCoreApplication::sendPostedEvents();
  return status;
}

}  // namespace velun
