// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/qt_translation.h"

#include "language/localization.h"
#include "support/suite.h"

#include <algorithm>
#include <memory>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>

using namespace velun;

class QtTranslationTest final : public test::Suite {
  Q_OBJECT

  /// Every text that Qt's dialog for saving a file shows.
  static QStringList fileDialogTexts() {
    QFileDialog dialog;
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    QStringList shown;
    for (const auto* label : dialog.findChildren<QLabel*>()) shown.append(label->text());
    for (const auto* button : dialog.findChildren<QAbstractButton*>()) {
      shown.append(button->text());
      shown.append(button->toolTip());
    }
    const auto* files = dialog.findChild<QAbstractItemView*>("treeView")->model();
    for (int column = 0; column < files->columnCount(); ++column) {
      shown.append(files->headerData(column, Qt::Horizontal).toString());
    }
    shown.removeAll(QString());
    return shown;
  }

  static QStringList menuTexts() {
    QLineEdit field;
    const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
    QStringList shown;
    for (const QAction* action : menu->actions()) {
      if (!action->isSeparator()) shown.append(action->text().section('\t', 0, 0));
    }
    return shown;
  }

  static bool isKorean(const QString& text) {
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.script() == QChar::Script_Hangul; });
  }

 private Q_SLOTS:
  void qtTextsFollowTheInterfaceLanguage() {
    const QtTranslation translation;
    for (const AppLanguage language :
         {AppLanguage::english, AppLanguage::korean, AppLanguage::english}) {
      Localization::shared().setLanguage(language);
      const QStringList shown = fileDialogTexts() + menuTexts();
      QVERIFY(shown.size() > 15);
      for (const QString& text : shown) {
        QVERIFY2(isKorean(text) == (language == AppLanguage::korean), qUtf8Printable(text));
      }
    }
  }
};

QTEST_MAIN(QtTranslationTest)
#include "qt_translation_test.moc"
