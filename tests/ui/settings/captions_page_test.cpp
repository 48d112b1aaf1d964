// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/language_popup.h"
#include "ui/settings/settings_suite.h"

#include <QAccessible>
#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace velun;

/// What the pages "Captions" and "Translation" offer, show and store.
class CaptionsPageTest final : public test::SettingsSuite {
  Q_OBJECT

 private Q_SLOTS:
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

  void speakersNeedAModel() {
    auto* toggle = named<QCheckBox>("Show who speaks");
    QVERIFY(!toggle->isEnabled());
    QVERIFY(!toggle->accessibleDescription().isEmpty());
    auto* install = named<QPushButton>("Install a Speaker Model…");
    QVERIFY(!install->isHidden());
    notes_.hasSpeakers = true;
    Q_EMIT notes_.changed();
    QVERIFY(toggle->isEnabled() && !toggle->isChecked());
    QVERIFY(install->isHidden());
    toggle->click();
    QVERIFY(settings_->labelsSpeakers());
    QVERIFY(AppSettings(preferences_.get()).labelsSpeakers());
    // Without the model it can still be turned off.
    notes_.hasSpeakers = false;
    Q_EMIT notes_.changed();
    QVERIFY(toggle->isEnabled());
    toggle->click();
    QVERIFY(!settings_->labelsSpeakers() && !toggle->isEnabled());
  }

  void languagesThatAreReadyComeFirst() {
    translation_.bytes = {{"de", 17'000'000}};
    loadLists();
    QCOMPARE(items(named<QComboBox>("Translation Language")),
             QStringList({"Korean", "Spanish", "German"}));
  }

  void typingIntoAChooserOfLanguagesSearches() {
    showPage("Translation");
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
    showPage("Captions");
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
    showPage("Captions");
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
};

QTEST_MAIN(CaptionsPageTest)
#include "captions_page_test.moc"
