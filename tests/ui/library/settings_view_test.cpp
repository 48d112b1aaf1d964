// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/settings_view.h"

#include "language/localization.h"
#include "support/manual_clock.h"
#include "support/memory_preferences.h"
#include "support/scripted_audio_platform.h"
#include "support/scripted_recognizer.h"
#include "support/scripted_speech_platform.h"
#include "support/scripted_translation_platform.h"
#include "support/suite.h"
#include "ui/common/language_popup.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace velun;

namespace {

struct ScriptedNotes final : SettingsNotes {
  bool hidesFromOthers() const override { return hides; }
  QString captureHiding() const override { return hiding; }
  QString download() const override { return downloading; }
  QString unknownWords() const override { return unknown; }

  bool hides = true;
  QString hiding;
  QString downloading;
  QString unknown;
};

}  // namespace

class SettingsViewTest final : public test::Suite {
  Q_OBJECT

  QTemporaryDir folder_;
  test::ManualClock clock_;
  std::unique_ptr<test::MemoryPreferences> preferences_;
  std::unique_ptr<AppSettings> settings_;
  test::ScriptedSpeechPlatform speech_;
  test::ScriptedTranslationPlatform translation_;
  test::ScriptedAudioPlatform audio_;
  std::unique_ptr<CaptionViewModel> model_;
  std::unique_ptr<SettingsView> view_;
  int folderOpenings_ = 0;
  ScriptedNotes notes_;

  void open() {
    settings_ = std::make_unique<AppSettings>(preferences_.get());
    SessionStore store;
    store.directory = QUrl::fromLocalFile(folder_.path());
    translation_.languages = {"ko", "es", "de"};
    auto script = std::make_shared<test::ScriptedRecognizer::Script>();
    model_ = std::make_unique<CaptionViewModel>(*settings_, store,
                                                std::make_unique<test::ScriptedRecognizer>(script),
                                                speech_, translation_, clock_);
    view_ = std::make_unique<SettingsView>(
        *model_, [this] { ++folderOpenings_; }, &notes_, DesktopSettings{.audio = &audio_});
    view_->resize(460, 760);
    view_->show();
  }

  void loadLists() {
    QSignalSpy loaded(model_.get(), &CaptionViewModel::languagesChanged);
    model_->loadLanguages();
    QTRY_COMPARE(loaded.count(), 1);
  }

  template <class Control>
  Control* named(const QString& name) const {
    for (Control* each : view_->findChildren<Control*>()) {
      if (each->accessibleName() == name) return each;
    }
    return nullptr;
  }

  static QStringList items(const QComboBox* chooser) {
    QStringList texts;
    for (int i = 0; i < chooser->count(); ++i) texts.append(chooser->itemText(i));
    return texts;
  }

  static void pick(QComboBox* chooser, int index) {
    chooser->setCurrentIndex(index);
    Q_EMIT chooser->activated(index);
  }

  bool shows(const QString& text) const {
    const auto labels = view_->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&text](const QLabel* label) {
      return label->text() == text && label->isVisible();
    });
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    preferences_ = std::make_unique<test::MemoryPreferences>();
    folderOpenings_ = 0;
    notes_.hides = true;
    notes_.hiding.clear();
    notes_.downloading.clear();
    open();
  }
  void cleanup() {
    view_.reset();
    model_.reset();
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void hasEverySectionAndControl() {
    for (const char* heading : {"Language · 언어", "Captions", "Translation", "Saving Sessions"}) {
      QVERIFY2(shows(QString::fromUtf8(heading)), heading);
    }
    for (const char* name : {"Language · 언어", "Input Source", "Device", "Recognition Language",
                             "Font Size", "Translation Language"}) {
      QVERIFY2(named<QComboBox>(QString::fromUtf8(name)), name);
    }
    for (const char* name :
         {"Keep caption window on top", "Hide caption window from screen sharing and recording",
          "Numbers as digits", "Live Translation", "Show Translation Only",
          "Save new sessions automatically", "Ask to save before a new session or quitting"}) {
      QVERIFY2(named<QCheckBox>(name), name);
    }
    QVERIFY(
        shows("Keeps the caption window off other people’s screens when you share your screen "
              "in Zoom, Teams, and similar apps"));
    QVERIFY(
        shows("Sessions are saved only when you click Save Session; later captions are then "
              "saved too. Auto-save applies from the next new session."));
    QVERIFY(
        shows("Unsaved captions are kept in memory only and are lost when the app quits. Audio "
              "is never saved."));
  }

  void switchingTheLanguageUpdatesEveryLabel() {
    pick(named<QComboBox>("Language · 언어"), 1);
    QCOMPARE(Localization::shared().language(), AppLanguage::korean);
    constexpr auto kSaving =
        "기본은 직접 저장입니다. ‘세션 저장’을 누르면 현재 세션의 이후 자막과 번역도 함께 "
        "저장합니다. 자동 저장 설정은 다음 새 세션부터 적용됩니다.";
    constexpr auto kUnsaved =
        "저장하지 않은 자막은 메모리에만 보관되며 앱이 종료되면 사라집니다. 오디오 파일은 "
        "저장하지 않습니다.";
    for (const char* text :
         {"Language · 언어", "자막", "번역", "세션 저장", "입력 소스", "인식 언어", "글자 크기",
          "번역 언어", "Zoom, Teams 등으로 화면을 공유할 때 상대방 화면에 자막 창이 보이지 않게 함",
          kSaving, kUnsaved}) {
      QVERIFY2(shows(QString::fromUtf8(text)), text);
    }
    for (const char* name :
         {"자막 창을 항상 위에 표시", "클릭이 자막 창을 통과하게 하기",
          "화면 공유·녹화에서 자막 창 숨기기", "실시간 번역", "숫자를 아라비아 숫자로 표시",
          "번역만 보기", "새 세션을 자동으로 저장", "새 세션·앱 종료 전에 저장 여부 묻기"}) {
      QVERIFY2(named<QCheckBox>(QString::fromUtf8(name)), name);
    }
    const auto buttons = view_->findChildren<QPushButton*>();
    QCOMPARE(buttons.size(), 1);
    QCOMPARE(buttons[0]->text(), QString("기록 폴더 열기"));
    QCOMPARE(items(named<QComboBox>(QString::fromUtf8("입력 소스"))),
             QStringList({"컴퓨터 오디오", "마이크"}));
    QCOMPARE(items(named<QComboBox>(QString::fromUtf8("Language · 언어"))),
             QStringList({"English", "한국어"}));
  }

  void everyToggleWritesItsSetting() {
    named<QCheckBox>("Keep caption window on top")->click();
    QVERIFY(!settings_->keepOnTop());
    named<QCheckBox>("Let clicks through the caption window")->click();
    QVERIFY(settings_->clickThrough());
    named<QCheckBox>("Hide caption window from screen sharing and recording")->click();
    QVERIFY(settings_->hideFromScreenSharing());
    named<QCheckBox>("Numbers as digits")->click();
    QVERIFY(!settings_->numbersAsDigits());
    named<QCheckBox>("Live Translation")->click();
    QVERIFY(settings_->translate());
    named<QCheckBox>("Show Translation Only")->click();
    QVERIFY(settings_->showTranslationOnly());
    named<QCheckBox>("Save new sessions automatically")->click();
    QVERIFY(settings_->autoSaveSessions());
    QVERIFY(!model_->isSavingSession());
    named<QCheckBox>("Ask to save before a new session or quitting")->click();
    QVERIFY(!settings_->askBeforeDiscarding());
    QCOMPARE(preferences_->get<bool>("keepOnTop"), std::optional(false));
  }

  void offersSevenFontSizesInOrder() {
    QComboBox* sizes = named<QComboBox>("Font Size");
    QCOMPARE(items(sizes), QStringList({"9pt", "11pt", "13pt", "16pt", "20pt", "24pt", "30pt"}));
    QCOMPARE(sizes->currentText(), QString("16pt"));
    pick(sizes, 6);
    QCOMPARE(settings_->fontSize(), 30.0);
  }

  void storedValueOutsideTheListIsShown() {
    preferences_->set("fontSize", 14.0);
    preferences_->set("localeID", QString("fr_CA"));
    const int writes = preferences_->writes;
    open();
    QCOMPARE(named<QComboBox>("Font Size")->currentText(), QString("14pt"));
    loadLists();
    QCOMPARE(named<QComboBox>("Recognition Language")->currentText(), QString("French (Canada)"));
    QCOMPARE(settings_->localeID(), QString("fr_CA"));
    QCOMPARE(preferences_->writes, writes);
  }

  void listsThatLoadLateWriteNoSetting() {
    const int writes = preferences_->writes;
    loadLists();
    QCOMPARE(items(named<QComboBox>("Translation Language")),
             QStringList({"German", "Korean", "Spanish"}));
    QCOMPARE(named<QComboBox>("Translation Language")->currentText(), QString("Korean"));
    QCOMPARE(items(named<QComboBox>("Recognition Language")),
             QStringList({"English (United States)", "Korean (South Korea)"}));
    QCOMPARE(preferences_->writes, writes);
    pick(named<QComboBox>("Recognition Language"), 1);
    QCOMPARE(settings_->localeID(), QString("ko_KR"));
    pick(named<QComboBox>("Translation Language"), 2);
    QCOMPARE(settings_->targetID(), QString("es"));
  }

  void languagesThatAreReadyComeFirst() {
    translation_.bytes = {{"de", 17'000'000}};
    loadLists();
    QCOMPARE(items(named<QComboBox>("Translation Language")),
             QStringList({"Korean", "Spanish", "German"}));
  }

  void typingIntoAChooserOfLanguagesSearches() {
    loadLists();
    auto* chooser = named<QComboBox>("Translation Language");
    QTest::keyClicks(chooser, "s");
    auto* popup = chooser->findChild<LanguagePopup*>();
    QVERIFY(popup->isVisible());
    auto* search = popup->findChild<QLineEdit*>();
    QCOMPARE(search->text(), QString("s"));
    QTest::keyClicks(chooser, "p");
    QCOMPARE(search->text(), QString("sp"));
    QTest::keyClicks(search, "an");
    QTest::keyClick(search, Qt::Key_Return);
    QVERIFY(!popup->isVisible());
    QCOMPARE(settings_->targetID(), QString("es"));
    QCOMPARE(chooser->currentText(), QString("Spanish"));
  }

  void screenReadersSeeWhetherAChooserIsOpen() {
    loadLists();
    auto* chooser = named<QComboBox>("Recognition Language");
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(chooser);
    QCOMPARE(seen->role(), QAccessible::ComboBox);
    QCOMPARE(seen->text(QAccessible::Name), QString("English (United States)"));
    QVERIFY(seen->state().expandable && !seen->state().expanded);
    seen->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    QVERIFY(seen->state().expanded);
    QVERIFY(chooser->findChild<LanguagePopup*>()->isVisible());
    seen->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    QVERIFY(!seen->state().expanded);
    QCOMPARE(seen->child(0)->role(), QAccessible::List);
    QCOMPARE(settings_->localeID(), QString("en_US"));
  }

  void changesMadeElsewhereAreShown() {
    settings_->setUseMic(true);
    QCOMPARE(named<QComboBox>("Input Source")->currentText(), QString("Microphone"));
    settings_->setKeepOnTop(false);
    QVERIFY(!named<QCheckBox>("Keep caption window on top")->isChecked());
  }

  void inputCanBeChosen() {
    pick(named<QComboBox>("Input Source"), 1);
    QVERIFY(settings_->useMic());
    pick(named<QComboBox>("Input Source"), 0);
    QVERIFY(!settings_->useMic());
  }

  void nonEmptyNotesAreShown() {
    notes_.hiding = "Here the panel goes away while the screen is shared.";
    QVERIFY(!shows(notes_.hiding));
    Q_EMIT notes_.changed();
    QVERIFY(shows(notes_.hiding));
    notes_.downloading = "Downloading…";
    Q_EMIT notes_.changed();
    QVERIFY(shows("Downloading…"));
    notes_.downloading.clear();
    Q_EMIT notes_.changed();
    QVERIFY(!shows("Downloading…"));
  }

  void namesAndTermsAreStoredAsTheyAreTyped() {
    auto* list = named<QPlainTextEdit>("Names and Terms");
    QTest::keyClicks(list, "Huebner");
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(settings_->userWords(), QString("Huebner"));
    QCOMPARE(list->toPlainText(), QString("Huebner\n"));
    QTest::keyClicks(list, "Dijkstra");
    QCOMPARE(preferences_->get<QString>("userWords"), std::optional<QString>("Huebner\nDijkstra"));
    settings_->setUserWords("Siemens");
    QCOMPARE(list->toPlainText(), QString("Siemens"));
    notes_.unknown = "The built-in recognizer doesn’t know Siemens.";
    Q_EMIT notes_.changed();
    QVERIFY(shows(notes_.unknown));
    notes_.unknown.clear();
    QTest::keyClick(list, Qt::Key_Tab);
    QVERIFY(!list->toPlainText().contains('\t'));
  }

  void hidingIsPromisedOnlyWhereSomethingHides() {
    const QString promise =
        "Keeps the caption window off other people’s screens when you share your screen in Zoom, "
        "Teams, and similar apps";
    const auto* toggle = named<QCheckBox>("Hide caption window from screen sharing and recording");
    notes_.hiding = "Nothing hides the window here.";
    Q_EMIT notes_.changed();
    QVERIFY(shows(promise));
    QCOMPARE(toggle->accessibleDescription(), promise);
    notes_.hides = false;
    Q_EMIT notes_.changed();
    QVERIFY(!shows(promise));
    QVERIFY(shows(notes_.hiding));
    QCOMPARE(toggle->accessibleDescription(), notes_.hiding);
    settings_->setLanguage(AppLanguage::korean);
    QVERIFY(!shows("Zoom, Teams 등으로 화면을 공유할 때 상대방 화면에 자막 창이 보이지 않게 함"));
    QCOMPARE(toggle->accessibleDescription(), notes_.hiding);
  }

  void folderButtonOpensTheFolder() {
    for (QPushButton* each : view_->findChildren<QPushButton*>()) {
      if (each->text() == "Open Sessions Folder") each->click();
    }
    QCOMPARE(folderOpenings_, 1);
  }

  void everyControlHasAToolTipAndTakesFocus() {
    for (QWidget* each : view_->findChildren<QWidget*>()) {
      const bool isControl = qobject_cast<QComboBox*>(each) || qobject_cast<QAbstractButton*>(each);
      if (!isControl || !each->isVisible()) continue;
      QVERIFY(!each->toolTip().isEmpty());
      QVERIFY(each->focusPolicy() & Qt::TabFocus);
    }
  }

  void everyTextFollowsTheDesktopColours() {
    const auto restore = qScopeGuard([] { QApplication::setPalette(QPalette()); });
    QApplication::setPalette(QPalette(QColor(45, 45, 48), QColor(37, 37, 40)));
    for (const QLabel* each : view_->findChildren<QLabel*>()) {
      QTRY_VERIFY2(each->palette().color(QPalette::WindowText).lightness() > 200,
                   qPrintable(each->text()));
    }
  }

  void nothingIsCutOffAtLargeFonts() {
    QFont large = view_->font();
    large.setPointSize(28);
    view_->setFont(large);
    for (QWidget* each : view_->widget()->findChildren<QWidget*>()) each->setFont(large);
    QTRY_VERIFY(view_->widget()->height() > view_->viewport()->height());
    QTRY_VERIFY(view_->widget()->height() >= view_->widget()->minimumSizeHint().height());
  }
};

QTEST_MAIN(SettingsViewTest)
#include "settings_view_test.moc"
