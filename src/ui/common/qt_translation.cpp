// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/qt_translation.h"

#include "language/localization.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace velun {

QtTranslation::QtTranslation() {
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &QtTranslation::followLanguage);
  followLanguage();
}

void QtTranslation::followLanguage() {
  const QString locale = Localization::shared().locale();
  QCoreApplication::removeTranslator(this);
  // English needs no translation: qtbase_en only adds plural forms.
  if (load("qtbase_" + locale, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(this);
  }
}

}  // namespace velun
