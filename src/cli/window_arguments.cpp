// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/window_arguments.h"

#include "language/localization.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace velun {

namespace {

using Option = QCommandLineOption;

QString helpText(const QCommandLineParser& parser) {
  QString text = parser.helpText();
  // The parser knows neither the program's name nor its command.
  text.replace(text.left(text.indexOf(u'\n')),
               L("Usage: velun [options] [file...]\n       velun captions [options] [recording]",
                 "사용법: velun [옵션] [파일...]\n       velun captions [옵션] [녹음 파일]"));
  return text;
}

}  // namespace

QStringList parseWindowArguments(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      L("Shows live captions of the computer's sound or of the microphone above other windows. "
        "“velun captions” writes them to the standard output.",
        "컴퓨터 소리나 마이크의 실시간 자막을 다른 창 위에 표시합니다. “velun captions”는 자막을 "
        "표준 출력에 씁니다."));
  parser.addOptions({Option({"h", "help"}, L("Show this help.", "이 도움말 표시.")),
                     Option({"v", "version"}, L("Show the version.", "버전 표시."))});
  parser.addPositionalArgument("file",
                               L("A session file to show, or a sound or video file to caption.",
                                 "표시할 기록 파일이나 자막을 만들 소리·동영상 파일."));
  if (!parser.parse(QStringList("velun") + arguments)) throw UsageError(parser.errorText());
  if (parser.isSet("help")) throw HelpRequested{helpText(parser)};
  if (parser.isSet("version")) {
    throw HelpRequested{"Velun " + QCoreApplication::applicationVersion() + u'\n'};
  }
  return parser.positionalArguments();
}

}  // namespace velun
