// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/student_translator.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/file_error.h"
#include "platform/translation/student/model_format_error.h"
#include "platform/translation/student/text_splitter.h"

#include <chrono>

namespace velun {

namespace {

bool separatesSentences(const QString& language) {
  static const QStringList kWithoutSpaces = {QStringLiteral("ja"), QStringLiteral("zh"),
                                             QStringLiteral("th"), QStringLiteral("lo"),
                                             QStringLiteral("km"), QStringLiteral("my")};
  return !kWithoutSpaces.contains(language);
}

QString namesOf(const LanguagePair& pair) {
  return QStringLiteral("%1 → %2").arg(languageName(pair.source), languageName(pair.target));
}

Failure unusable(const LanguagePair& pair, ModelFormatError::Reason reason) {
  const QString names = namesOf(pair);
  if (reason == ModelFormatError::Reason::unsupported) {
    return Failure(
        L(QStringLiteral("The translation model %1 is of a kind that Velun can’t use.").arg(names),
          QStringLiteral("번역 모델 %1은(는) Velun에서 사용할 수 없는 형식입니다.").arg(names)));
  }
  return Failure(L(QStringLiteral("The translation model %1 is damaged.").arg(names),
                   QStringLiteral("번역 모델 %1이(가) 손상되었습니다.").arg(names)));
}

Failure unreadable(const LanguagePair& pair, const FileError& error) {
  const QString names = namesOf(pair);
  const QString reason = qt_error_string(error.code().value());
  return Failure(
      L(QStringLiteral("The translation model %1 couldn’t be read: %2.").arg(names, reason),
        QStringLiteral("번역 모델 %1을(를) 읽을 수 없습니다: %2.").arg(names, reason)));
}

}  // namespace

StudentTranslator::StudentTranslator(StudentFiles files, LanguagePair pair, SpeedReport reportSpeed,
                                     std::shared_ptr<const void> use)
    : files_(std::move(files)),
      pair_(std::move(pair)),
      reportSpeed_(std::move(reportSpeed)),
      use_(std::move(use)) {}

void StudentTranslator::load() {
  if (engine_) return;
  try {
    engine_ = std::make_unique<const StudentEngine>(files_);
  } catch (const ModelFormatError& error) {
    throw unusable(pair_, error.reason());
  } catch (const FileError& error) {
    throw unreadable(pair_, error);
  }
}

QString StudentTranslator::translate(const QString& text, std::stop_token stop) {
  load();
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  const FitsModel fits = [this](const QString& piece) {
    return engine_->tokenCount(piece) <= StudentEngine::kMaxTokens;
  };
  QStringList translations;
  for (const QString& piece : splitForModel(text, pair_.source, fits)) {
    const QString translation = engine_->translateSentence(piece, stop);
    if (!translation.isEmpty()) translations += translation;
  }
  QString result =
      translations.join(separatesSentences(pair_.target) ? QStringLiteral(" ") : QString());
  const int tokens = engine_->tokenCount(text);
  if (reportSpeed_ && tokens > 0) {
    const std::chrono::duration<double, std::milli> taken = Clock::now() - start;
    reportSpeed_(taken.count() / tokens);
  }
  return result;
}

}  // namespace velun
