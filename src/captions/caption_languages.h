// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/language_choice.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <vector>

namespace velun {

class SpeechPlatform;
class TranslationPlatform;

/// The languages that the user can choose from, sorted by their names in the interface language.
/// Identifiers with equal names keep the order of their platform. Main thread.
class CaptionLanguages final : public QObject {
  Q_OBJECT

 public:
  /// The platforms must outlive this object.
  CaptionLanguages(SpeechPlatform& speech, TranslationPlatform& translation);

  /// Identifiers of the locales that can be recognized. Empty until `load` completes.
  const QStringList& locales() const { return locales_; }
  /// Identifiers of the languages that can be translated into. Empty until `load` completes.
  const QStringList& languages() const { return languages_; }

  /// The same with what each has to download now: those that are ready first, otherwise in the
  /// same order. Looks at the files of every language.
  std::vector<LanguageChoice> localeChoices() const;
  /// The languages that `sourceID` can be translated into.
  std::vector<LanguageChoice> languageChoices(const QString& sourceID) const;

  /// Fetches and sorts both lists; again after a change of the interface language.
  QCoro::Task<> load() { return load(this); }

 Q_SIGNALS:
  void localesChanged();
  void languagesChanged();

 private:
  static QCoro::Task<> load(QPointer<CaptionLanguages> self);

  SpeechPlatform& speech_;
  TranslationPlatform& translation_;
  QStringList locales_;
  QStringList languages_;
};

}  // namespace velun
