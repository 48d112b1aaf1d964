// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "support/suite.h"
#include "ui/models/licence_dialog.h"
#include "ui/models/models_page_stage.h"

#include <QApplication>

using namespace velun;

class ModelsPageTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void installedLanguagesComeFirst() {
    test::ModelsPageStage stage;
    stage.store.setInstalled(stage.model("korean"));
    stage.open();
    QCOMPARE(stage.languages(),
             QStringList({"English (United States)", "Korean (South Korea)", "French (France)"}));
  }

  void languagesAreFoundByTheirNamesInThreeLanguages_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("found");
    QTest::newRow("English") << "fren" << QStringList{"French (France)"};
    QTest::newRow("Korean") << "프랑" << QStringList{"French (France)"};
    QTest::newRow("own name") << "français" << QStringList{"French (France)"};
    QTest::newRow("nothing") << "klingon" << QStringList();
    QTest::newRow("all") << ""
                         << QStringList({"English (United States)", "French (France)",
                                         "Korean (South Korea)"});
  }
  void languagesAreFoundByTheirNamesInThreeLanguages() {
    test::ModelsPageStage stage;
    QFETCH(QString, text);
    QFETCH(QStringList, found);
    stage.open();
    stage.search(text);
    QCOMPARE(stage.languages(), found);
    QCOMPARE(stage.shows("No language found"), found.isEmpty());
  }

  void speakerModelsHaveAHeadingOfTheirOwn() {
    std::vector<Model> models = test::someModels().models();
    models.push_back(test::speakerModel("voices"));
    test::ModelsPageStage stage{ModelCatalogue(models)};
    stage.open();
    QVERIFY(stage.shows("Speakers"));
    QCOMPARE(stage.languages().last(), QString("Tell Speakers Apart"));
    stage.button("Tell Speakers Apart")->click();
    QVERIFY(stage.shows("VOICES"));
    QVERIFY(stage.shows("28 MB to download · License: Apache-2.0"));
    stage.search("speakers");
    QCOMPARE(stage.languages(), QStringList("Tell Speakers Apart"));
    stage.press("Install: VOICES");
    QCOMPARE(stage.store.asked, QStringList("voices"));
    stage.store.setInstalled(stage.model("voices"));
    Q_EMIT stage.store.stateChanged("voices");
    QCoreApplication::processEvents();
    QVERIFY(stage.button("Remove…: VOICES"));
  }

  void currentLanguageShowsItsModels() {
    test::ModelsPageStage stage;
    stage.open();
    QVERIFY(stage.shows("BIG-EN"));
    QVERIFY(stage.shows("Writes capital letters and punctuation"));
    QVERIFY(stage.shows("134 MB to download"));
    QVERIFY(stage.shows("License: Apache-2.0"));
    QVERIFY(!stage.shows("FRENCH"));
    stage.button("French (France), français")->click();
    QVERIFY(stage.shows("FRENCH"));
  }

  void licenceIsShown() {
    test::ModelsPageStage stage;
    stage.open();
    stage.press("License…: BIG-EN");
    QCOMPARE(stage.page->findChild<LicenceDialog*>()->windowTitle(),
             QString("License of “BIG-EN”"));
  }

  void everythingIsReachedWithTheKeyboardFromTopToBottom() {
    test::ModelsPageStage stage;
    stage.store.setInstalled(stage.model("small-en"));
    stage.open();
    stage.button("Korean (South Korea), 한국어")->click();
    stage.page->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(stage.page.get()));
    stage.page->findChild<QLineEdit*>()->setFocus();
    int place = 0;
    QStringList reached;
    while (true) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      const QWidget* focused = QApplication::focusWidget();
      if (qobject_cast<const QLineEdit*>(focused)) break;
      reached << focused->accessibleName();
      QVERIFY(!focused->accessibleName().isEmpty());
      const int next = focused->mapTo(stage.page.get(), QPoint()).y();
      QVERIFY2(next >= place || focused->accessibleName() == "Add from File…",
               qPrintable(reached.join(", ")));
      place = next;
      QVERIFY(reached.size() < 100);
    }
    QVERIFY(reached.contains("Remove…: SMALL-EN"));
    QVERIFY(reached.contains("Install: KOREAN"));
    QCOMPARE(reached.last(), QString("Add from File…"));
  }

  void focusStaysWithTheModelWhenItsButtonsChange() {
    test::ModelsPageStage stage;
    stage.open();
    stage.page->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(stage.page.get()));
    stage.button("Install: BIG-EN")->setFocus();
    ModelState half;
    half.stage = ModelState::Stage::downloading;
    stage.store.setState(stage.model("big-en"), half);
    QCOMPARE(QApplication::focusWidget()->accessibleName(), QString("Pause: BIG-EN"));
  }

  void textsFollowTheInterfaceLanguage() {
    test::ModelsPageStage stage;
    stage.open();
    stage.settings.setLanguage(AppLanguage::korean);
    QTRY_VERIFY(stage.shows("음성 인식"));
    QVERIFY(stage.button("설치: BIG-EN"));
    QVERIFY(stage.button("파일에서 추가…"));
    QVERIFY(stage.shows("대문자와 문장 부호를 씁니다"));
  }
};

QTEST_MAIN(ModelsPageTest)
#include "models_page_test.moc"
