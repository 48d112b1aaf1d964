// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/models_page.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/models/group_header.h"
#include "ui/models/licence_dialog.h"
#include "ui/models/models_fixture.h"

#include <map>
#include <QAbstractButton>
#include <QApplication>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <semaphore>
#include <thread>

using namespace velun;

namespace {

Model speechModel(const QString& id, const QString& locale, std::int64_t megabytes) {
  Model model;
  model.id = id;
  model.title = id.toUpper();
  model.languages = {locale.section('_', 0, 0)};
  model.licence = "Apache-2.0";
  model.installedBytes = megabytes * 1'000'000;
  model.options["locales"] = QJsonArray{locale};
  ModelDownload download;
  download.addresses = {"https://example.org/" + id + ".onnx"};
  download.bytes = model.installedBytes;
  model.downloads = {download};
  return model;
}

ModelState at(ModelState::Stage stage, const QString& failure = {}) {
  ModelState state;
  state.stage = stage;
  state.failure = failure;
  return state;
}

ModelCatalogue someModels() {
  Model small = speechModel("small-en", "en_US", 70);
  small.options["punctuation"] = "none";
  Model other = speechModel("other-en", "en_US", 60);
  other.options["punctuation"] = "none";
  Model big = speechModel("big-en", "en_US", 134);
  big.writesCase = big.writesPunctuation = true;
  Model french = speechModel("french", "fr_FR", 80);
  french.licence = "Unclear";
  french.licenceNotice = {"The makers say so.", "제작자의 설명입니다."};
  Model marks = speechModel("marks-en", "en_US", 7);
  marks.kind = ModelKind::punctuation;
  return ModelCatalogue({big, small, other, french, speechModel("korean", "ko_KR", 90), marks});
}

}  // namespace

class ModelsPageTest final : public test::Suite {
  Q_OBJECT

  std::unique_ptr<test::ModelsFixture> f_;
  std::unique_ptr<ModelsPage> page_;

  void open() {
    QTRY_VERIFY(!f_->captions.locales().isEmpty());
    page_ = std::make_unique<ModelsPage>(f_->captions, f_->services());
    page_->resize(460, 700);
    page_->show();
    QVERIFY(QTest::qWaitForWindowExposed(page_.get()));
  }

  const Model& model(const char* id) const { return *f_->catalogue.find(id); }

  QAbstractButton* button(const QString& name) const {
    for (auto* each : page_->findChildren<QAbstractButton*>()) {
      if (each->accessibleName() == name && each->isVisible()) return each;
    }
    return nullptr;
  }

  void press(const QString& name) const {
    QAbstractButton* found = button(name);
    QVERIFY2(found && found->isEnabled(), qPrintable(name));
    found->click();
  }

  /// The accessible names of the shown headers, from top to bottom.
  QStringList languages() const {
    std::map<int, QString> byPlace;
    for (auto* each : page_->findChildren<GroupHeader*>()) {
      if (!each->isVisible()) continue;
      byPlace[each->mapTo(page_.get(), QPoint()).y()] = each->text();
    }
    QStringList names;
    for (const auto& [place, name] : byPlace) names << name;
    return names;
  }

  bool shows(const QString& text) const {
    const auto labels = page_->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&text](const QLabel* label) {
      return label->isVisible() && label->text().contains(text);
    });
  }

  void search(const QString& text) const {
    page_->findChild<QLineEdit*>()->setText(text);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    f_ = std::make_unique<test::ModelsFixture>(someModels());
  }
  void cleanup() {
    page_.reset();
    f_.reset();
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void installedLanguagesComeFirst() {
    f_->store.setInstalled(model("korean"));
    open();
    QCOMPARE(languages(),
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
    QFETCH(QString, text);
    QFETCH(QStringList, found);
    open();
    search(text);
    QCOMPARE(languages(), found);
    QCOMPARE(shows("No language found"), found.isEmpty());
  }

  void currentLanguageShowsItsModels() {
    open();
    QVERIFY(shows("BIG-EN"));
    QVERIFY(shows("Writes capital letters and punctuation"));
    QVERIFY(shows("134 MB to download"));
    QVERIFY(shows("License: Apache-2.0"));
    QVERIFY(!shows("FRENCH"));
    button("French (France), français")->click();
    QVERIFY(shows("FRENCH"));
  }

  void modelIsInstalledUsedAndRemoved() {
    open();
    press("Install: BIG-EN");
    QCOMPARE(f_->store.asked, QStringList("big-en"));
    ModelState half;
    half.stage = ModelState::Stage::downloading;
    half.doneBytes = 67'000'000;
    half.bytesPerSecond = 2e6;
    half.secondsLeft = 33;
    f_->store.setState(model("big-en"), half);
    QVERIFY(shows("67 MB of 134 MB · 2.0 MB/s · 33 seconds left"));
    press("Pause: BIG-EN");
    QCOMPARE(f_->store.paused, QStringList("big-en"));
    press("Cancel: BIG-EN");
    QCOMPARE(f_->store.cancelled, QStringList("big-en"));

    f_->store.setInstalled(model("big-en"));
    QVERIFY(shows("Installed on 22 November 2026 · 134 MB on disk"));
    QVERIFY(shows("Models use 134 MB"));
    press("Use This One: Built-in");
    QCOMPARE(f_->choices->choice("en_US"), QString("built-in"));
    press("Use This One: BIG-EN");
    QCOMPARE(f_->choices->choice("en_US"), QString("big-en"));
    press("Choose Automatically: BIG-EN");
    QCOMPARE(f_->choices->choice("en_US"), QString());

    f_->question.answers = {1, 0};
    press("Remove…: BIG-EN");
    QVERIFY(f_->store.isInstalled(model("big-en")));
    press("Remove…: BIG-EN");
    QVERIFY(f_->question.asked.back().informativeText.contains("134 MB"));
    QVERIFY(!f_->store.isInstalled(model("big-en")));
    QVERIFY(button("Install: BIG-EN"));
    QVERIFY(shows("Models use 0 MB"));
  }

  void modelInUseIsNotRemoved() {
    f_->store.setInstalled(model("big-en"));
    const std::shared_ptr<const void> use = f_->store.use(model("big-en"));
    open();
    QVERIFY(!button("Remove…: BIG-EN")->isEnabled());
    QCOMPARE(button("Remove…: BIG-EN")->toolTip(), QString("Captions use it now"));
  }

  void failedRemovalIsReported() {
    f_->store.setInstalled(model("big-en"));
    open();
    f_->store.failure = "The disk is read-only.";
    f_->question.answers = {0, 0};
    press("Remove…: BIG-EN");
    QCOMPARE(f_->question.asked.size(), std::size_t(2));
    QCOMPARE(f_->question.asked.back().informativeText, QString("The disk is read-only."));
    QVERIFY(button("Remove…: BIG-EN"));
  }

  void punctuationIsRemovedWithTheLastModelThatNeedsIt() {
    for (const char* id : {"small-en", "other-en", "marks-en"}) f_->store.setInstalled(model(id));
    open();
    f_->question.answers = {0, 0};
    press("Remove…: SMALL-EN");
    QVERIFY(!f_->question.asked.back().informativeText.contains("punctuation"));
    QVERIFY(f_->store.isInstalled(model("marks-en")));
    press("Remove…: OTHER-EN");
    QVERIFY(f_->question.asked.back().informativeText.startsWith("The punctuation model is"));
    QVERIFY(f_->question.asked.back().informativeText.contains("67 MB"));
    QVERIFY(!f_->store.isInstalled(model("marks-en")));
  }

  void licenceIsShown() {
    open();
    press("License…: BIG-EN");
    QCOMPARE(page_->findChild<LicenceDialog*>()->windowTitle(), QString("License of “BIG-EN”"));
  }

  void punctuationIsInstalledWithAModelThatWritesNone() {
    open();
    press("Install: SMALL-EN");
    QCOMPARE(f_->store.asked, QStringList({"small-en", "marks-en"}));
  }

  void punctuationIsPausedAndCancelledWithItsModel() {
    f_->store.setState(model("small-en"), at(ModelState::Stage::downloading));
    open();
    press("Pause: SMALL-EN");
    QCOMPARE(f_->store.paused, QStringList({"small-en", "marks-en"}));
    f_->store.setState(model("small-en"), at(ModelState::Stage::paused));
    press("Resume: SMALL-EN");
    QCOMPARE(f_->store.asked, QStringList({"small-en", "marks-en"}));
    press("Cancel: SMALL-EN");
    QCOMPARE(f_->store.cancelled, QStringList({"small-en", "marks-en"}));
  }

  void punctuationThatAnotherModelNeedsIsNotCancelled() {
    f_->store.setInstalled(model("other-en"));
    f_->store.setState(model("small-en"), at(ModelState::Stage::paused));
    open();
    press("Cancel: SMALL-EN");
    QCOMPARE(f_->store.cancelled, QStringList("small-en"));
  }

  void missingPunctuationOfAnInstalledModelIsInstalled() {
    f_->store.setInstalled(model("small-en"));
    open();
    QVERIFY(shows("Its punctuation model is not installed."));
    press("Install Punctuation: SMALL-EN");
    QCOMPARE(f_->store.asked, QStringList("marks-en"));
    f_->store.setState(model("marks-en"), at(ModelState::Stage::failed, "No connection."));
    QVERIFY(shows("No connection."));
    press("Try Again: SMALL-EN");
    QCOMPARE(f_->store.asked, QStringList({"marks-en", "marks-en"}));
    f_->store.setInstalled(model("marks-en"));
    QVERIFY(!shows("No connection.") && !button("Install Punctuation: SMALL-EN"));
    QVERIFY(button("Remove…: SMALL-EN"));
  }

  void punctuationThatIsAddedIsSaid() {
    open();
    QVERIFY(shows("Writes words; Velun adds capital letters and punctuation"));
  }

  void unclearLicenceHasToBeAgreedTo() {
    open();
    button("French (France), français")->click();
    f_->question.answers = {1, 0};
    press("Install: FRENCH");
    QCOMPARE(f_->question.asked.front().informativeText, QString("The makers say so."));
    QVERIFY(f_->store.asked.isEmpty());
    press("Install: FRENCH");
    QCOMPARE(f_->store.asked, QStringList("french"));
  }

  void meteredConnectionIsAskedAbout() {
    f_->store.metered = true;
    open();
    f_->question.answers = {1, 0};
    press("Install: BIG-EN");
    QCOMPARE(f_->question.asked.front().message,
             QString("Download 134 MB over a metered connection?"));
    QVERIFY(f_->store.asked.isEmpty());
    press("Install: BIG-EN");
    QCOMPARE(f_->store.asked, QStringList("big-en"));
  }

  void failedDownloadSaysWhyAndIsTriedAgain() {
    open();
    ModelState failed;
    failed.stage = ModelState::Stage::failed;
    failed.failure = "no connection to example.org";
    f_->store.setState(model("big-en"), failed);
    QVERIFY(shows("no connection to example.org"));
    press("Try Again: BIG-EN");
    QCOMPARE(f_->store.asked, QStringList("big-en"));
  }

  void otherRevisionIsUpdated() {
    f_->store.outdated += "big-en";
    open();
    QVERIFY(shows("An update is available."));
    press("Update: BIG-EN");
    QCOMPARE(f_->store.asked, QStringList("big-en"));
  }

  void fileIsAdded() {
    open();
    f_->chosenFile = QUrl::fromLocalFile("/downloads/model.onnx");
    std::counting_semaphore<> mayEnd(0);
    f_->store.placer = [this, &mayEnd](const QString& path, const auto& progress, const auto&) {
      progress(0.5);
      mayEnd.acquire();
      return PlacedModelFile{path == "/downloads/model.onnx" ? "big-en" : "", {}};
    };
    press("Add from File…");
    QVERIFY(button("Cancel"));
    mayEnd.release();
    QTRY_VERIFY(shows("“BIG-EN” is installed."));
    QVERIFY(button("Add from File…"));
  }

  void unknownFileIsRefusedAndAnIncompleteModelSaysWhatIsMissing() {
    open();
    f_->chosenFile = QUrl::fromLocalFile("/downloads/photo.jpg");
    f_->store.placer = [](const QString&, const auto&, const auto&) -> PlacedModelFile {
      throw Failure("not a model");
    };
    press("Add from File…");
    QTRY_VERIFY(shows("not a model"));
    f_->store.placer = [](const QString&, const auto&, const auto&) {
      return PlacedModelFile{"big-en", {"decoder.onnx", "tokens.txt"}};
    };
    press("Add from File…");
    QTRY_VERIFY(shows("decoder.onnx, tokens.txt"));
  }

  void addingAFileIsCancelled() {
    open();
    f_->chosenFile = QUrl::fromLocalFile("/downloads/model.onnx");
    std::counting_semaphore<> hasEnded(0);
    f_->store.placer = [&hasEnded](const QString&, const auto&, const std::stop_token& stop) {
      while (!stop.stop_requested()) std::this_thread::yield();
      hasEnded.release();
      return PlacedModelFile{"big-en", {}};
    };
    press("Add from File…");
    press("Cancel");
    hasEnded.acquire();
    QVERIFY(button("Add from File…"));
    QVERIFY(!shows("is installed"));
  }

  void everythingIsReachedWithTheKeyboardFromTopToBottom() {
    f_->store.setInstalled(model("small-en"));
    open();
    button("Korean (South Korea), 한국어")->click();
    page_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(page_.get()));
    page_->findChild<QLineEdit*>()->setFocus();
    int place = 0;
    QStringList reached;
    while (true) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      const QWidget* focused = QApplication::focusWidget();
      if (qobject_cast<const QLineEdit*>(focused)) break;
      reached << focused->accessibleName();
      QVERIFY(!focused->accessibleName().isEmpty());
      const int next = focused->mapTo(page_.get(), QPoint()).y();
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
    open();
    page_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(page_.get()));
    button("Install: BIG-EN")->setFocus();
    ModelState half;
    half.stage = ModelState::Stage::downloading;
    f_->store.setState(model("big-en"), half);
    QCOMPARE(QApplication::focusWidget()->accessibleName(), QString("Pause: BIG-EN"));
  }

  void textsFollowTheInterfaceLanguage() {
    open();
    f_->settings.setLanguage(AppLanguage::korean);
    QTRY_VERIFY(shows("음성 인식"));
    QVERIFY(button("설치: BIG-EN"));
    QVERIFY(button("파일에서 추가…"));
    QVERIFY(shows("대문자와 문장 부호를 씁니다"));
  }
};

QTEST_MAIN(ModelsPageTest)
#include "models_page_test.moc"
