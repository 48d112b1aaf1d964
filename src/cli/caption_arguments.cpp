// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/caption_arguments.h"

#include "language/localization.h"

#include <map>
#include <QCommandLineParser>

namespace velun {

namespace {

using Option = QCommandLineOption;

const std::map<QString, CaptionOutput> kOutputs = {{"text", CaptionOutput::text},
                                                   {"srt", CaptionOutput::subRip},
                                                   {"vtt", CaptionOutput::webVTT},
                                                   {"json", CaptionOutput::json}};

void addOptions(QCommandLineParser& parser) {
  parser.addOptions({
      Option({"i", "input"},
             L("What to caption without a recording: computer (the default), microphone or both.",
               "녹음 파일이 없을 때 자막으로 만들 소리: computer(기본값), microphone 또는 both."),
             "input"),
      Option({"d", "device"},
             L("The output or microphone, by a name that --list-devices shows. The default is the "
               "one that the computer uses.",
               "출력 장치나 마이크. --list-devices에 나오는 이름으로 지정합니다. 기본값은 컴퓨터가 "
               "쓰는 장치입니다."),
             "name"),
      Option({"p", "program"},
             L("Caption this program only, by a name that --list-devices shows while it plays.",
               "이 프로그램의 소리만 자막으로. 소리를 내는 동안 --list-devices에 나오는 이름으로 "
               "지정합니다."),
             "name"),
      Option({"x", "except"},
             L("Caption all programs but this one.", "이 프로그램을 뺀 모든 소리를 자막으로."),
             "name"),
      Option({"l", "language"},
             L("The spoken language, such as en_US. The default is that of Velun's window.",
               "말하는 언어(예: en_US). 기본값은 Velun 창에서 고른 언어입니다."),
             "locale"),
      Option({"m", "model"},
             L("The recognizer, by the name that --list-models shows.",
               "인식기. --list-models에 나오는 이름으로 지정합니다."),
             "name"),
      Option({"f", "format"},
             L("How to write lines: text (the default), srt, vtt or json (one object a line).",
               "줄을 쓰는 형식: text(기본값), srt, vtt 또는 json(줄마다 객체 하나)."),
             "format"),
      Option({"t", "translate"},
             L("Also translate into this language, such as es.", "이 언어로도 번역(예: es)."),
             "language"),
      Option("times",
             L("Show when each line was said (format text).", "줄마다 말한 시각 표시(text 형식).")),
      Option("drafts", L("Show unfinished lines on a terminal (format text) or as objects (json).",
                         "끝나지 않은 줄을 터미널(text 형식) 또는 객체(json)로 표시.")),
      Option("list-models",
             L("List the recognizers of the language and whether they are installed.",
               "해당 언어의 인식기와 설치 여부를 나열.")),
      Option("list-devices", L("List the outputs, the microphones and the programs that play.",
                               "출력 장치, 마이크, 소리를 내는 프로그램을 나열.")),
      Option({"h", "help"}, L("Show this help.", "이 도움말 표시.")),
  });
}

QString helpText(const QCommandLineParser& parser) {
  QString text = parser.helpText();
  // The parser knows the program's name only.
  text.replace(text.left(text.indexOf(u'\n')), L("Usage: velun captions [options] [recording]",
                                                 "사용법: velun captions [옵션] [녹음 파일]"));
  return text;
}

[[noreturn]] void refuse(const QString& option, const QString& value, const QString& expected) {
  throw UsageError(L("“%2” is not a value of --%1; it can be %3.",
                     "“%2”은(는) --%1의 값이 아닙니다. 가능한 값: %3.")
                       .arg(option, value, expected));
}

InputChoice inputOf(const QString& value) {
  if (value.isEmpty()) return InputChoice::computer;
  if (const auto choice = inputChoiceFromRawValue(value)) return *choice;
  refuse("input", value, "computer, microphone, both");
}

CaptionOutput outputOf(const QString& value) {
  const auto found = kOutputs.find(value.isEmpty() ? QStringLiteral("text") : value);
  if (found == kOutputs.end()) refuse("format", value, "text, srt, vtt, json");
  return found->second;
}

ProgramChoice programOf(const QCommandLineParser& parser) {
  if (parser.isSet("program")) return {ProgramChoice::Scope::only, parser.value("program")};
  if (parser.isSet("except")) return {ProgramChoice::Scope::allBut, parser.value("except")};
  return {};
}

/// At most one of these says what to caption.
void checkSource(const CaptionArguments& arguments, const QCommandLineParser& parser) {
  for (const char* live : {"input", "device", "program", "except"}) {
    if (!arguments.recording || !parser.isSet(live)) continue;
    throw UsageError(L("Either a recording or --%1 can be captioned, not both.",
                       "녹음 파일과 --%1 가운데 하나만 지정할 수 있습니다.")
                         .arg(QLatin1String(live)));
  }
  const bool isMicrophone = arguments.input == InputChoice::microphone;
  for (const char* program : {"program", "except"}) {
    if (!parser.isSet(program)) continue;
    if (parser.value(program).isEmpty()) {
      throw UsageError(
          L("--%1 needs the name of a program.", "--%1에는 프로그램 이름이 필요합니다.")
              .arg(QLatin1String(program)));
    }
    if (isMicrophone || parser.isSet("device") ||
        (parser.isSet("program") && parser.isSet("except"))) {
      throw UsageError(L("--%1 is for the computer’s sound and cannot be combined with --device or "
                         "another program.",
                         "--%1은 컴퓨터 소리에만 쓰며 --device나 다른 프로그램과 함께 쓸 수 "
                         "없습니다.")
                           .arg(QLatin1String(program)));
    }
  }
}

void check(const CaptionArguments& arguments, const QCommandLineParser& parser) {
  const bool isText = arguments.output == CaptionOutput::text;
  if (arguments.showsTimes && !isText) {
    throw UsageError(L("--times is for the format text; the others always have times.",
                       "--times는 text 형식에만 씁니다. 다른 형식에는 항상 시각이 있습니다."));
  }
  if (arguments.showsDrafts && !isText && arguments.output != CaptionOutput::json) {
    throw UsageError(L("Subtitles have no drafts; use --drafts with the format text or json.",
                       "자막 파일에는 끝나지 않은 줄이 없습니다. --drafts는 text 또는 json 형식과 "
                       "함께 쓰세요."));
  }
  checkSource(arguments, parser);
}

}  // namespace

CaptionArguments parseCaptionArguments(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(L(
      "Writes live captions of the computer's sound or of the microphone, or the captions of a "
      "sound or video file, to the standard output. Everything happens on this computer.",
      "컴퓨터 소리나 마이크의 실시간 자막, 또는 소리·동영상 파일의 자막을 표준 출력에 씁니다. 모든 "
      "처리는 이 컴퓨터에서 이루어집니다."));
  addOptions(parser);
  parser.addPositionalArgument("recording", L("A sound or video file; - reads the standard input.",
                                              "소리나 동영상 파일. -는 표준 입력을 읽습니다."));
  if (!parser.parse(QStringList("velun") + arguments)) throw UsageError(parser.errorText());
  if (parser.isSet("help")) throw HelpRequested{helpText(parser)};
  CaptionArguments result;
  const QStringList recordings = parser.positionalArguments();
  if (recordings.size() > 1) {
    throw UsageError(L("Only one recording can be captioned at a time.",
                       "한 번에 하나의 녹음 파일만 지정할 수 있습니다."));
  }
  if (!recordings.isEmpty()) result.recording = recordings.first();
  result.input = inputOf(parser.value("input"));
  result.device = parser.value("device");
  result.program = programOf(parser);
  result.localeID = parser.value("language");
  result.model = parser.value("model");
  result.output = outputOf(parser.value("format"));
  result.showsTimes = parser.isSet("times");
  result.showsDrafts = parser.isSet("drafts");
  result.target = parser.value("translate");
  result.listsModels = parser.isSet("list-models");
  result.listsDevices = parser.isSet("list-devices");
  check(result, parser);
  return result;
}

}  // namespace velun
