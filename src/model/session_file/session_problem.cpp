// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_problem.h"

#include "language/localization.h"
#include "model/session_file/session_file.h"

namespace velun {

namespace {

using Kind = SessionProblem::Kind;

/// What is wrong, with %1 for the quoted key.
QString problemText(Kind kind) {
  switch (kind) {
    case Kind::notUtf8:
      return L("the text is not valid UTF-8", "올바른 UTF-8 텍스트가 아닙니다");
    case Kind::endsEarly:
      return L("the file ends too early", "파일이 중간에 끝납니다");
    case Kind::badCharacter:
      return L("a text holds a character that is not valid",
               "텍스트에 올바르지 않은 문자가 있습니다");
    case Kind::tooDeep:
      return L("values are nested too deeply", "값이 너무 깊이 중첩되어 있습니다");
    case Kind::tooManyLines:
      return L("there are more lines and translations than a session can hold",
               "기록에 담을 수 있는 것보다 줄과 번역이 많습니다");
    case Kind::tooManyLanguages:
      static_assert(kMaxTranslationLanguages == 500);
      return L("there are translations into more than 500 languages",
               "번역 언어가 500개를 넘습니다");
    case Kind::notAnObject:
      return L("%1 is not an object", "%1 값이 객체가 아닙니다");
    case Kind::notAList:
      return L("%1 is not a list", "%1 값이 목록이 아닙니다");
    case Kind::notAText:
      return L("%1 is not a text", "%1 값이 텍스트가 아닙니다");
    case Kind::notAnInteger:
      return L("%1 is not a whole number", "%1 값이 정수가 아닙니다");
    case Kind::notADuration:
      return L("%1 is not a number of seconds from 0 to 1,000,000,000",
               "%1 값이 0에서 1,000,000,000 사이의 초가 아닙니다");
    case Kind::notAnId:
      return L("%1 is not an identifier", "%1 값이 식별자가 아닙니다");
    case Kind::notATime:
      return L("%1 is not a date", "%1 값이 날짜가 아닙니다");
    case Kind::notAnInput:
      return L("%1 is neither “computer” nor “microphone”",
               "%1 값이 “computer”도 “microphone”도 아닙니다");
    case Kind::missing:
      return L("%1 is missing", "%1 값이 없습니다");
    default:
      return L("this is not a session file", "기록 파일의 형식이 아닙니다");
  }
}

QString quotedKey(const std::string& key) {
  if (key.empty()) return L("the session", "기록");
  // In a damaged file, the key of a translation can be any text.
  constexpr qsizetype kMaxShown = 40;
  return QStringLiteral("“%1”").arg(QString::fromStdString(key).left(kMaxShown));
}

}  // namespace

QString describe(const SessionProblem& problem, const QString& fileName) {
  switch (problem.kind) {
    case Kind::newerVersion:
      return L("This session was saved by a newer version of Velun.",
               "이 기록은 더 최신 버전의 Velun에서 저장했습니다.");
    case Kind::tooLarge:
      return L("“%1” is larger than 256 MB, more than a session can be.",
               "“%1” 파일이 256MB보다 커서 기록으로 읽을 수 없습니다.")
          .arg(fileName);
    case Kind::empty:
      return L("“%1” is empty.", "“%1” 파일이 비어 있습니다.").arg(fileName);
    case Kind::transcriptNotUtf8:
      return L("“%1” is not a UTF-8 text.", "“%1” 파일은 UTF-8 텍스트가 아닙니다.").arg(fileName);
    case Kind::notATranscript:
      return L("This isn’t a transcript from an earlier version of Velun.",
               "Velun의 이전 자막 기록 형식이 아닙니다.");
    default:
      break;
  }
  const QString what =
      problemText(problem.kind).replace(QStringLiteral("%1"), quotedKey(problem.key));
  return L("“%1” couldn’t be read. Line %2 of the file: %3.",
           "“%1” 파일을 읽을 수 없습니다. 파일의 %2번째 줄: %3.")
      .arg(fileName, QString::number(problem.line), what);
}

}  // namespace velun
