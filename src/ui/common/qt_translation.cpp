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
  // Qt's texts are English in its source: there is nothing to load for that language.
  if (load("qtbase_" + locale, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(this);
  }
}

}  // namespace velun
