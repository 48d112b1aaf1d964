// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/settings_suite.h"

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QStackedWidget>

using namespace velun;

/// All pages of the settings window: what they show, and the list that chooses one.
class SettingsWindowTest final : public test::SettingsSuite {
  Q_OBJECT

  QString shownPage() const { return list().currentItem()->text(); }

  /// Whether a control is on the page that is shown.
  bool isShown(const QWidget* control) const {
    return window().findChild<QStackedWidget*>()->currentWidget()->isAncestorOf(control);
  }

 private Q_SLOTS:
  void pagesAreInTheirOrder() {
    QStringList titles;
    for (int row = 0; row < list().count(); ++row) titles << list().item(row)->text();
    QCOMPARE(titles, QStringList({"General", "Captions", "Appearance", "Translation", "Sessions"}));
    QCOMPARE(list().accessibleName(), QString("Settings Pages"));
    QCOMPARE(shownPage(), QString("General"));
    settings_->setLanguage(AppLanguage::korean);
    QCOMPARE(list().item(1)->text(), QString("자막"));
    QCOMPARE(list().accessibleName(), QString("설정 페이지"));
  }

  void theListShowsThePage() {
    QVERIFY(isShown(named<QComboBox>("Language · 언어")));
    QTest::keyClick(&list(), Qt::Key_Down);
    QVERIFY(isShown(named<QComboBox>("Input Source")));
    // As assistive technology does.
    list().item(4)->setSelected(true);
    QVERIFY(isShown(named<QCheckBox>("Save new sessions automatically")));
  }

  void keysShowTheNextPageFromEverywhere() {
    QVERIFY(QTest::qWaitForWindowActive(&window()));
    named<QComboBox>("Language · 언어")->setFocus();
    const auto press = [](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
      QTest::keyClick(QApplication::focusWidget(), key, modifiers | Qt::ControlModifier);
    };
    press(Qt::Key_Tab);
    QCOMPARE(shownPage(), QString("Captions"));
    press(Qt::Key_PageDown);
    QCOMPARE(shownPage(), QString("Appearance"));
    press(Qt::Key_PageUp);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(shownPage(), QString("General"));
    press(Qt::Key_PageUp);
    QCOMPARE(shownPage(), QString("Sessions"));
    press(Qt::Key_Tab);
    QCOMPARE(shownPage(), QString("General"));
    QVERIFY(list().hasFocus());
  }

  void everyPageFitsTheWindow() {
    QCOMPARE(window().size(), QSize(640, 620));
    for (const AppLanguage language : allAppLanguages) {
      settings_->setLanguage(language);
      for (int row = 0; row < list().count(); ++row) {
        list().setCurrentRow(row);
        const auto* page = window().findChild<QStackedWidget*>()->currentWidget();
        QVERIFY2(page->width() >= page->minimumSizeHint().width(), qPrintable(shownPage()));
        QVERIFY(list().sizeHintForColumn(0) <= list().viewport()->width());
      }
    }
  }

  void hasEverySectionAndControl() {
    for (const char* heading :
         {"Language · 언어", "Captions", "Caption Window", "Translation", "Saving Sessions"}) {
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
    const auto buttons = window().findChildren<QPushButton*>();
    QVERIFY(std::ranges::any_of(buttons, [](const QPushButton* button) {
      return button->text() == QStringLiteral("기록 폴더 열기");
    }));
    QCOMPARE(items(named<QComboBox>(QString::fromUtf8("입력 소스"))),
             QStringList({"컴퓨터 오디오", "마이크", "컴퓨터와 마이크"}));
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

  void folderButtonOpensTheFolder() {
    for (QPushButton* each : window().findChildren<QPushButton*>()) {
      if (each->text() == "Open Sessions Folder") each->click();
    }
    QCOMPARE(folderOpenings_, 1);
  }

  void everyControlHasAToolTipAndTakesFocus() {
    for (QWidget* each : window().findChildren<QWidget*>()) {
      const bool isControl = qobject_cast<QComboBox*>(each) || qobject_cast<QAbstractButton*>(each);
      if (!isControl || !each->isVisible()) continue;
      QVERIFY(!each->toolTip().isEmpty());
      QVERIFY(each->focusPolicy() & Qt::TabFocus);
    }
  }

  void everyTextFollowsTheDesktopColours() {
    const auto restore = qScopeGuard([] { QApplication::setPalette(QPalette()); });
    QApplication::setPalette(QPalette(QColor(45, 45, 48), QColor(37, 37, 40)));
    for (const QLabel* each : window().findChildren<QLabel*>()) {
      QTRY_VERIFY2(each->palette().color(QPalette::WindowText).lightness() > 200,
                   qPrintable(each->text()));
    }
  }

  void nothingIsCutOffAtLargeFonts() {
    QFont large = window().font();
    large.setPointSize(28);
    for (QWidget* each : window().findChildren<QWidget*>()) each->setFont(large);
    showPage("Captions");
    auto* page = qobject_cast<QScrollArea*>(window().findChild<QStackedWidget*>()->currentWidget());
    QTRY_VERIFY(page->widget()->height() > page->viewport()->height());
    QTRY_VERIFY(page->widget()->height() >= page->widget()->minimumSizeHint().height());
    QTRY_VERIFY(list().sizeHintForColumn(0) <= list().viewport()->width());
  }
};

QTEST_MAIN(SettingsWindowTest)
#include "settings_window_test.moc"
