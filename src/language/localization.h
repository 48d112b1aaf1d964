// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/app_language.h"

#include <atomic>
#include <QObject>
#include <QString>

namespace velun {

class PreferenceStore;

/// The current interface language, observed by everything that shows a text. Main thread, except
/// that `L` may be called from any thread.
class Localization final : public QObject {
  Q_OBJECT

 public:
  /// The only instance. English until `load` or `setLanguage`.
  static Localization& shared();

  /// Reads the language stored under "language"; English when it is missing or unknown.
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

/// Returns the text in the current interface language. Any thread.
QString L(const char* english, const char* korean);
QString L(const QString& english, const QString& korean);

/// The name of a language or locale identifier ("ko", "en_US") in the interface language; the
/// identifier itself when it has no name.
QString languageName(const QString& identifier);

}  // namespace velun
