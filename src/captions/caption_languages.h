// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QStringList>

namespace velun {

/// Where the lists of languages come from.
struct LanguageLists {
  /// Locale identifiers that can be recognized.
  std::function<QCoro::Task<QStringList>()> supportedLocales;
  /// Language identifiers that can be translated into.
  std::function<QCoro::Task<QStringList>()> supportedLanguages;
};

/// The languages that the user can choose from, sorted by their names in the interface language.
/// Identifiers with equal names keep the order of their source. Main thread.
class CaptionLanguages final : public QObject {
  Q_OBJECT

 public:
  explicit CaptionLanguages(LanguageLists sources, QObject* parent = nullptr);

  /// Identifiers of the locales that can be recognized. Empty until `load` completes.
  const QStringList& locales() const { return locales_; }
  /// Identifiers of the languages that can be translated into. Empty until `load` completes.
  const QStringList& languages() const { return languages_; }

  /// Fetches and sorts both lists; again after a change of the interface language.
  QCoro::Task<> load() { return load(this, sources_); }

 Q_SIGNALS:
  void localesChanged();
  void languagesChanged();

 private:
  static QCoro::Task<> load(QPointer<CaptionLanguages> self, LanguageLists sources);

  LanguageLists sources_;
  QStringList locales_;
  QStringList languages_;
};

}  // namespace velun
