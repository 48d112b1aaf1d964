// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_languages.h"

#include "captions/update.h"
#include "language/localization.h"
#include "model/line.h"
#include "platform/speech/speech_platform.h"
#include "platform/translation/translation_platform.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace velun {

namespace {

QStringList sortedByName(const QStringList& identifiers) {
  std::vector<std::pair<QString, QString>> named;
  for (const QString& identifier : identifiers) {
    named.emplace_back(languageName(identifier), identifier);
  }
  std::stable_sort(named.begin(), named.end(), [](const auto& left, const auto& right) {
    return CodePointOrder()(left.first, right.first);
  });
  QStringList sorted;
  for (const auto& [name, identifier] : named) sorted.append(identifier);
  return sorted;
}

std::vector<LanguageChoice> readyFirst(std::vector<LanguageChoice> choices) {
  std::ranges::stable_partition(choices, &LanguageChoice::isReady);
  return choices;
}

}  // namespace

CaptionLanguages::CaptionLanguages(SpeechPlatform& speech, TranslationPlatform& translation)
    : speech_(speech), translation_(translation) {}

std::vector<LanguageChoice> CaptionLanguages::localeChoices() const {
  std::vector<LanguageChoice> choices;
  for (const QString& locale : locales_) {
    LanguageChoice choice{locale, languageName(locale), std::nullopt};
    if (const std::optional<SpeechSupport> support = speech_.support(locale)) {
      if (!support->needsAgreement) {
        choice.downloadBytes = support->offer ? support->offer->downloadBytes() : 0;
      }
    }
    choices.push_back(std::move(choice));
  }
  return readyFirst(std::move(choices));
}

std::vector<LanguageChoice> CaptionLanguages::languageChoices(const QString& sourceID) const {
  const std::vector<std::optional<qint64>> bytes = translation_.downloadBytes(sourceID, languages_);
  std::vector<LanguageChoice> choices;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const QString& language = languages_[static_cast<qsizetype>(i)];
    choices.push_back({language, languageName(language), bytes[i]});
  }
  return readyFirst(std::move(choices));
}

QCoro::Task<> CaptionLanguages::load(QPointer<CaptionLanguages> self) {
  QCoro::Task<QStringList> localesTask = self->speech_.supportedLocales();
  const QStringList locales = co_await localesTask;
  if (!self) co_return;
  if (update(self->locales_, sortedByName(locales))) Q_EMIT self->localesChanged();

  QCoro::Task<QStringList> languagesTask = self->translation_.supportedLanguages();
  const QStringList languages = co_await languagesTask;
  if (!self) co_return;
  if (update(self->languages_, sortedByName(languages))) Q_EMIT self->languagesChanged();
}

}  // namespace velun
