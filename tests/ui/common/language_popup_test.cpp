// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/language_popup.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/common/language_choice_model.h"

#include <algorithm>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QProxyStyle>
#include <QScreen>
#include <QSignalSpy>

using namespace velun;

namespace {

std::vector<LanguageChoice> choices() {
  return {{"en_US", "English (United States)", 0},
          {"fr_FR", "French (France)", 134'000'000},
          {"de_DE", "German (Germany)", 51'400'000},
          {"bn", "Bangla", {}},
          {"ko_KR", "Korean (South Korea)", 70'000}};
}

/// Shares the activation of a window with its tools.
class SharingStyle final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    return hint == SH_Widget_ShareActivation ? 1
                                             : QProxyStyle::styleHint(hint, option, widget, data);
  }
};

}  // namespace

class LanguagePopupTest final : public test::Suite {
  Q_OBJECT

  std::unique_ptr<QWidget> owner_;
  LanguagePopup* popup_ = nullptr;
  QLineEdit* search_ = nullptr;
  QListView* list_ = nullptr;

  void open(const QRect& anchor = {100, 100, 200, 30}, const QString& typed = {}) {
    popup_->open("Input Language", choices(), "de_DE", anchor, typed);
    QVERIFY(QTest::qWaitForWindowActive(popup_));
  }

  QStringList rows(int role = Qt::DisplayRole) const {
    QStringList texts;
    for (int i = 0; i < list_->model()->rowCount(); ++i) {
      texts << list_->model()->index(i, 0).data(role).toString();
    }
    return texts;
  }
  QString currentRow() const { return list_->currentIndex().data().toString(); }

  /// Presses a key where the focus is.
  static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
  static void type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }

 private Q_SLOTS:
  void init() {
    Suite::init();
    owner_ = std::make_unique<QWidget>();
    owner_->show();
    popup_ = new LanguagePopup(owner_.get());
    search_ = popup_->findChild<QLineEdit*>();
    list_ = popup_->findChild<QListView*>();
  }
  void cleanup() {
    owner_.reset();
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void showsWhatIsReadyAndWhatHasToBeDownloaded() {
    open();
    QCOMPARE(
        rows(LanguageChoiceModel::statusRole),
        QStringList({"Ready", "Download · 134 MB", "Download · 51 MB", "", "Download · 1 MB"}));
    QCOMPARE(rows(Qt::AccessibleTextRole).mid(0, 2),
             QStringList({"English (United States), Ready", "French (France), Download · 134 MB"}));
    QCOMPARE(currentRow(), QString("German (Germany)"));
    QCOMPARE(list_->accessibleName(), QString("Input Language"));
    Localization::shared().setLanguage(AppLanguage::korean);
    open();
    QCOMPARE(rows(LanguageChoiceModel::statusRole).mid(0, 2),
             QStringList({"사용 가능", "다운로드 · 134MB"}));
    QCOMPARE(search_->accessibleName(), QString("언어 검색"));
  }

  void typingFindsALanguageAndEnterChoosesIt() {
    QSignalSpy chosen(popup_, &LanguagePopup::chosen);
    open();
    type("francais");
    QCOMPARE(rows(), QStringList{"French (France)"});
    press(Qt::Key_Return);
    QVERIFY(!popup_->isVisible());
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen[0][0].toString(), QString("fr_FR"));
    open();
    QVERIFY(search_->text().isEmpty());
    QCOMPARE(rows().size(), 5);
  }

  void startsOfWordsHideOtherMatches() {
    open();
    type("an");  // nowhere at the beginning
    QCOMPARE(rows(), QStringList({"French (France)", "German (Germany)", "Bangla",
                                  "Korean (South Korea)"}));
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    type("g");
    QCOMPARE(rows(), QStringList{"German (Germany)"});
  }

  void arrowKeysMoveInTheList() {
    QSignalSpy chosen(popup_, &LanguagePopup::chosen);
    open();
    press(Qt::Key_Down);
    QVERIFY(list_->hasFocus());
    QCOMPARE(currentRow(), QString("Bangla"));
    press(Qt::Key_Home);
    QCOMPARE(currentRow(), QString("English (United States)"));
    press(Qt::Key_Up);
    QVERIFY(search_->hasFocus());
    press(Qt::Key_End);
    QCOMPARE(currentRow(), QString("Korean (South Korea)"));
    type("ger");
    QVERIFY(search_->hasFocus());
    QCOMPARE(search_->text(), QString("ger"));
    press(Qt::Key_Enter);
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen[0][0].toString(), QString("de_DE"));
  }

  void escapeClosesWithoutAChoice() {
    QSignalSpy chosen(popup_, &LanguagePopup::chosen);
    QSignalSpy closed(popup_, &LanguagePopup::closed);
    open();
    type("ger");
    press(Qt::Key_Escape);
    QVERIFY(!popup_->isVisible());
    open();
    press(Qt::Key_Down);
    press(Qt::Key_Escape);
    QVERIFY(!popup_->isVisible());
    QCOMPARE(closed.count(), 2);
    QVERIFY(chosen.isEmpty());
  }

  void aClickChooses() {
    QSignalSpy chosen(popup_, &LanguagePopup::chosen);
    open();
    const QPoint row = list_->visualRect(list_->model()->index(1, 0)).center();
    QTest::mouseClick(list_->viewport(), Qt::LeftButton, {}, row);
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen[0][0].toString(), QString("fr_FR"));
  }

  void anotherActiveWindowClosesIt_data() {
    QTest::addColumn<bool>("sharesActivation");
    QTest::newRow("most styles") << false;
    QTest::newRow("a style in which tools are active with their window") << true;
  }
  void anotherActiveWindowClosesIt() {
    QFETCH(bool, sharesActivation);
    SharingStyle style;
    if (sharesActivation) popup_->setStyle(&style);
    open();
    owner_->activateWindow();
    QTRY_VERIFY(!popup_->isVisible());
    popup_->setStyle(nullptr);
  }

  void anotherWindowThatIsActiveForAMomentDoesNotCloseIt() {
    open();
    QEvent deactivated(QEvent::WindowDeactivate);
    QApplication::sendEvent(popup_, &deactivated);
    QEvent activated(QEvent::WindowActivate);
    QApplication::sendEvent(popup_, &activated);
    QCoreApplication::processEvents();
    QVERIFY(popup_->isVisible());
  }

  void nothingFoundIsSaidAndChoosesNothing() {
    QSignalSpy chosen(popup_, &LanguagePopup::chosen);
    open({100, 100, 200, 30}, "klingon");
    QVERIFY(rows().isEmpty());
    const auto labels = popup_->findChildren<QLabel*>();
    QVERIFY(std::ranges::any_of(labels, [](const QLabel* label) {
      return label->isVisible() && label->text() == QString("No language found");
    }));
    press(Qt::Key_Return);
    QVERIFY(popup_->isVisible() && chosen.isEmpty());
  }

  void neverCoversTheScreen() {
    std::vector<LanguageChoice> many;
    for (int i = 0; i < 120; ++i) {
      many.push_back({QString("x%1").arg(i), QString(300, 'w'), 1});
    }
    const QRect area = popup_->screen()->availableGeometry();
    const QRect corner(area.right() - 20, area.bottom() - 20, 20, 20);
    popup_->open("Languages", many, "x3", corner);
    QVERIFY(area.contains(popup_->geometry()));
    QVERIFY(popup_->height() <= area.height() * 0.6 + 1);
    QVERIFY(popup_->width() <= area.width() / 2 + 1);
    QVERIFY(popup_->geometry().bottom() < corner.top());
  }
};

QTEST_MAIN(LanguagePopupTest)
#include "language_popup_test.moc"
