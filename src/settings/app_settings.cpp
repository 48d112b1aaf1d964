// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/app_settings.h"

#include "language/localization.h"
#include "platform/foundation/preference_store.h"

namespace velun {

AppSettings::AppSettings(PreferenceStore* defaults, QObject* parent)
    : QObject(parent), defaults_(defaults) {
  if (defaults_) {
    const auto boolean = [this](const char* key, bool missing) {
      return defaults_->get<bool>(QString::fromLatin1(key)).value_or(missing);
    };
    const auto text = [this](const char* key, const QString& missing) {
      return defaults_->get<QString>(QString::fromLatin1(key)).value_or(missing);
    };
    language_ = appLanguageFromRawValue(text("language", QString())).value_or(AppLanguage::english);
    useMic_ = boolean("useMic", useMic_);
    localeID_ = text("localeID", localeID_);
    targetID_ = text("targetID", targetID_);
    fontSize_ = defaults_->get<double>(QStringLiteral("fontSize")).value_or(fontSize_);
    translate_ = boolean("translate", translate_);
    showTranslationOnly_ = boolean("showTranslationOnly", showTranslationOnly_);
    autoSaveSessions_ = boolean("autoSaveSessions", autoSaveSessions_);
    askBeforeDiscarding_ = boolean("askBeforeDiscarding", askBeforeDiscarding_);
    keepOnTop_ = boolean("keepOnTop", keepOnTop_);
    hideFromScreenSharing_ = boolean("hideFromScreenSharing", hideFromScreenSharing_);
  }
  Localization::shared().setLanguage(language_);
}

void AppSettings::setLanguage(AppLanguage language) {
  language_ = language;
  write("language", rawValue(language));
  Localization::shared().setLanguage(language);
  Q_EMIT languageChanged();
}

void AppSettings::setUseMic(bool useMic) {
  const bool differs = useMic != useMic_;
  useMic_ = useMic;
  write("useMic", useMic_);
  Q_EMIT useMicChanged();
  if (differs) report(Change::input);
}

void AppSettings::setLocaleID(const QString& localeID) {
  const bool differs = localeID != localeID_;
  localeID_ = localeID;
  write("localeID", localeID_);
  Q_EMIT localeIDChanged();
  if (differs) report(Change::sourceLanguage);
}

void AppSettings::setTargetID(const QString& targetID) {
  const bool differs = targetID != targetID_;
  targetID_ = targetID;
  write("targetID", targetID_);
  Q_EMIT targetIDChanged();
  if (differs) report(Change::targetLanguage);
}

void AppSettings::setFontSize(double fontSize) {
  fontSize_ = fontSize;
  write("fontSize", fontSize_);
  Q_EMIT fontSizeChanged();
}

void AppSettings::setTranslate(bool translate) {
  const bool differs = translate != translate_;
  translate_ = translate;
  write("translate", translate_);
  Q_EMIT translateChanged();
  if (differs) report(Change::translation);
}

void AppSettings::setShowTranslationOnly(bool showTranslationOnly) {
  showTranslationOnly_ = showTranslationOnly;
  write("showTranslationOnly", showTranslationOnly_);
  Q_EMIT showTranslationOnlyChanged();
}

void AppSettings::setAutoSaveSessions(bool autoSaveSessions) {
  autoSaveSessions_ = autoSaveSessions;
  write("autoSaveSessions", autoSaveSessions_);
  Q_EMIT autoSaveSessionsChanged();
}

void AppSettings::setAskBeforeDiscarding(bool askBeforeDiscarding) {
  askBeforeDiscarding_ = askBeforeDiscarding;
  write("askBeforeDiscarding", askBeforeDiscarding_);
  Q_EMIT askBeforeDiscardingChanged();
}

void AppSettings::setKeepOnTop(bool keepOnTop) {
  keepOnTop_ = keepOnTop;
  write("keepOnTop", keepOnTop_);
  Q_EMIT keepOnTopChanged();
}

void AppSettings::setHideFromScreenSharing(bool hideFromScreenSharing) {
  hideFromScreenSharing_ = hideFromScreenSharing;
  write("hideFromScreenSharing", hideFromScreenSharing_);
  Q_EMIT hideFromScreenSharingChanged();
}

void AppSettings::write(const char* key, bool value) {
  if (defaults_) defaults_->set(QString::fromLatin1(key), value);
}

void AppSettings::write(const char* key, double value) {
  if (defaults_) defaults_->set(QString::fromLatin1(key), value);
}

void AppSettings::write(const char* key, const QString& value) {
  if (defaults_) defaults_->set(QString::fromLatin1(key), value);
}

void AppSettings::report(Change change) {
  if (onChange) onChange(change);
}

}  // namespace velun
