// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/licence_dialog.h"

#include "language/localization.h"
#include "platform/models/model_catalogue.h"
#include "support/suite.h"
#include "ui/models/licence_texts.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>

using namespace velun;

namespace {

Model modelWith(const QString& licence) {
  Model model;
  model.title = "Model";
  model.licence = licence;
  ModelDownload download;
  download.addresses = {"https://example.org/makers/model/file.onnx"};
  model.downloads = {download};
  return model;
}

}  // namespace

class LicenceDialogTest final : public test::Suite {
  Q_OBJECT

  static QString summary(const LicenceDialog& dialog) {
    return dialog.findChild<QLabel*>()->text();
  }

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void textOfTheLicenceIsShown() {
    QPointer<LicenceDialog> dialog = new LicenceDialog(modelWith("Apache-2.0"), nullptr);
    dialog->open();
    QCOMPARE(dialog->windowTitle(), QString("License of “Model”"));
    QVERIFY(dialog->findChild<QPlainTextEdit*>()->toPlainText().contains("Apache License"));
    QVERIFY(summary(*dialog).contains("https://example.org/makers/model"));
    dialog->findChild<QPushButton*>()->click();
    QTRY_VERIFY(!dialog);
  }

  void addressIsShownWithoutAText() {
    const LicenceDialog dialog(modelWith("OpenMDW-1.1"), nullptr);
    QVERIFY(!dialog.findChild<QPlainTextEdit*>());
    QVERIFY(summary(dialog).contains("The text of the license: <a href="));
  }

  void statementOfTheMakersIsShownAsText() {
    Model model = modelWith("Unclear");
    model.licenceNotice = {"The makers <b>say</b> so.", "제작자의 설명입니다."};
    const LicenceDialog dialog(model, nullptr);
    QVERIFY(summary(dialog).contains("The makers &lt;b&gt;say"));
    Localization::shared().setLanguage(AppLanguage::korean);
    const LicenceDialog korean(model, nullptr);
    QVERIFY(summary(korean).contains("제작자의 설명입니다."));
    QCOMPARE(korean.windowTitle(), QString("“Model”의 라이선스"));
  }

  void everyLicenceHasATextAnAddressOrAStatement() {
    const ModelCatalogue catalogue = ModelCatalogue::builtIn();
    for (const Model& each : catalogue.models()) {
      const bool hasText = fullLicenceText(each.licence).size() > 500;
      const bool isExplained =
          !licenceAddress(each.licence).isEmpty() || !each.licenceNotice.isEmpty();
      QVERIFY2(hasText || isExplained, qPrintable(each.licence));
    }
    QVERIFY(fullLicenceText("../models/recognition").isEmpty());
  }
};

QTEST_MAIN(LicenceDialogTest)
#include "licence_dialog_test.moc"
