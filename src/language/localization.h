// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/app_language.h"

#include <atomic>
#include <QObject>
#include <QString>

namespace velun {

class PreferenceStore;

/// The interface language in force, observed by everything that shows a text. Main thread, except
/// that `L` may be called from any thread.
class Localization final : public QObject {
  Q_OBJECT

 public:
  /// The one instance. English until `load` or the settings say otherwise.
  static Localization& shared();

  /// Takes the language stored under "language"; missing or unknown gives English.
  void load(const PreferenceStore& preferences);

  AppLanguage language() const { return language_; }
  void setLanguage(AppLanguage language);

  /// The locale identifier for times, dates and language names: "en" or "ko".
  QString locale() const;

 Q_SIGNALS:
  void languageChanged();

 private:
  std::atomic<AppLanguage> language_ = AppLanguage::english;
};

/// The text of the pair that the interface language asks for, at the moment of the call.
QString L(const char* english, const char* korean);
QString L(const QString& english, const QString& korean);

/// The name of a language or locale identifier ("ko", "en_US") in the interface language; the
/// identifier itself when it has no name.
QString languageName(const QString& identifier);

}  // namespace velun
