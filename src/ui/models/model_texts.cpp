// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/model_texts.h"

#include "language/localization.h"

#include <cmath>
#include <QLocale>
#include <QStringList>

namespace velun {

namespace {

QString text(const BilingualText& both) {
  return L(both.english, both.korean);
}

QString writesText(const Model& model, bool getsPunctuation) {
  if (getsPunctuation) {
    return L("Writes words; Velun adds capital letters and punctuation",
             "단어만 쓰며 대문자와 문장 부호는 Velun이 추가합니다");
  }
  if (model.writesCase && model.writesPunctuation) {
    return L("Writes capital letters and punctuation", "대문자와 문장 부호를 씁니다");
  }
  if (model.writesPunctuation) return L("Writes punctuation", "문장 부호를 씁니다");
  if (model.writesCase) {
    return L("Writes capital letters, no punctuation", "대문자를 쓰며 문장 부호는 쓰지 않습니다");
  }
  return L("Writes words without punctuation", "문장 부호 없이 단어만 씁니다");
}

QString stepText(int stepMs) {
  if (stepMs <= 0) return {};
  const QString seconds = QLocale::c().toString(stepMs / 1000.0, 'f', stepMs % 100 ? 2 : 1);
  return L("text every %1 s", "%1초마다 갱신").arg(seconds);
}

QString qualityWord(ModelQuality quality) {
  switch (quality) {
    case ModelQuality::good:
      return L("Good quality", "품질 좋음");
    case ModelQuality::fair:
      return L("Fair quality", "품질 보통");
    case ModelQuality::higherErrors:
      break;
  }
  return L("More errors than others", "오류가 더 많음");
}

QString sourceText(ModelErrors::Source source) {
  switch (source) {
    case ModelErrors::Source::velun:
      return L("measured by Velun", "Velun 측정");
    case ModelErrors::Source::maker:
      return L("measured by its maker", "제작자 측정");
    case ModelErrors::Source::others:
      break;
  }
  return L("measured by others", "제삼자 측정");
}

QString qualityText(ModelQuality quality, const std::optional<ModelErrors>& errors) {
  const QString word = qualityWord(quality);
  if (!errors) return L("%1, not measured yet", "%1, 측정값 없음").arg(word);
  const QString percent = QLocale::c().toString(
      errors->percent, 'f', errors->percent == std::round(errors->percent) ? 0 : 1);
  const QString share = errors->areOfCharacters
                            ? L("%1% of characters wrong", "글자 오류 %1%").arg(percent)
                            : L("%1% of words wrong", "단어 오류 %1%").arg(percent);
  return L("%1: %2 in %3, %4", "%1: %3에서 %2, %4")
      .arg(word, share, text(errors->speech), sourceText(errors->source));
}

QString durationText(int seconds) {
  if (seconds < 60) {
    return seconds == 1 ? L("1 second left", "1초 남음")
                        : L("%1 seconds left", "%1초 남음").arg(seconds);
  }
  const int minutes = (seconds + 30) / 60;
  return minutes == 1 ? L("1 minute left", "1분 남음")
                      : L("%1 minutes left", "%1분 남음").arg(minutes);
}

QString join(QStringList parts) {
  parts.removeAll(QString());
  return parts.join(" · ");
}

}  // namespace

QString nameText(const Model& model) {
  if (model.kind != ModelKind::translation) return model.title;
  return L("%1 into %2", "%1에서 %2로 번역")
      .arg(languageName(model.languages.value(0)), languageName(model.languages.value(1)));
}

QString sizeText(std::int64_t bytes) {
  const double megabytes = static_cast<double>(bytes) / 1e6;
  if (megabytes >= 1000) return QLocale::c().toString(megabytes / 1000, 'f', 1) + " GB";
  const int digits = megabytes > 0 && megabytes < 1 ? 1 : 0;
  return QLocale::c().toString(megabytes, 'f', digits) + " MB";
}

QStringList factsText(const Model& model, const QString& language, bool getsPunctuation) {
  QString memory;
  if (model.memoryBytes > 0) {
    memory = L("%1 of memory", "메모리 %1").arg(sizeText(model.memoryBytes));
  }
  const QString download = L("%1 to download", "다운로드 %1").arg(sizeText(model.downloadBytes()));
  return {join({writesText(model, getsPunctuation), stepText(model.stepMs)}),
          qualityText(model.qualityOf(language), model.errorsOf(language)),
          join({download, memory, licenceText(model)})};
}

QStringList translationFactsText(const Model& model, std::int64_t bytes) {
  const double score = model.options["comet"].toDouble();
  const QString quality = score > 0 ? L("Quality %1 of 100, as published by its makers (COMET)",
                                        "품질 100점 중 %1점, 제작자 발표(COMET)")
                                          .arg(QLocale::c().toString(100 * score, 'f', 0))
                                    : L("Its makers have published no measure of its quality",
                                        "제작자가 발표한 품질 수치 없음");
  const QString download =
      bytes > 0 ? L("%1 to download", "다운로드 %1").arg(sizeText(bytes)) : QString();
  return {quality, join({download, licenceText(model)})};
}

QStringList speakerFactsText(const Model& model) {
  QStringList languages;
  for (const QString& each : model.languages) languages += languageName(each);
  const QString download = L("%1 to download", "다운로드 %1").arg(sizeText(model.downloadBytes()));
  return {L("Made with voices in: %1. Other languages work less well.",
            "학습한 음성: %1. 다른 언어에서는 정확도가 낮습니다.")
              .arg(languages.join(QStringLiteral(", "))),
          join({download, licenceText(model)})};
}

QStringList builtInFactsText() {
  // docs/recognition.md, development set.
  const ModelErrors errors{
      28, {"speech of many kinds", "여러 종류의 음성"}, ModelErrors::Source::velun};
  return {L("Writes capital letters and punctuation", "대문자와 문장 부호를 씁니다"),
          qualityText(ModelQuality::higherErrors, errors),
          L("Comes with Velun and needs no download",
            "Velun에 포함되어 있어 다운로드가 필요 없습니다")};
}

QString installationText(const QDate& date, std::int64_t bytes) {
  const QLocale locale(Localization::shared().locale());
  const QString day = locale.toString(date, L("d MMMM yyyy", "yyyy년 M월 d일"));
  return join({date.isValid() ? L("Installed on %1", "설치: %1").arg(day) : QString(),
               L("%1 on disk", "디스크 %1").arg(sizeText(bytes))});
}

QString progressText(const ModelState& state) {
  QString speed;
  if (state.bytesPerSecond > 0) {
    speed = QLocale::c().toString(state.bytesPerSecond / 1e6, 'f', 1) + " MB/s";
  }
  const QString done =
      L("%1 of %2", "%2 중 %1").arg(sizeText(state.doneBytes), sizeText(state.totalBytes));
  const QString left = state.secondsLeft ? durationText(*state.secondsLeft) : QString();
  return join({done, speed, left});
}

QString licenceText(const Model& model) {
  if (model.licenceNotice.isEmpty()) return L("License: %1", "라이선스: %1").arg(model.licence);
  return L("License: %1 (see its statement)", "라이선스: %1(설명 참고)").arg(model.licence);
}

}  // namespace velun
