// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/window_presentation.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "support/suite.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

using namespace velun;

class WindowPresentationTest final : public test::Suite {
  Q_OBJECT

 private:
  static QStringList labelsOf(const QWidget& window) {
    QStringList texts;
    for (const QLabel* label : window.findChildren<QLabel*>()) {
      if (!label->text().isEmpty()) texts << label->text();
    }
    return texts;
  }

  /// Calls `act` with the next alert once it is open.
  static void withAlert(const std::function<void(QDialog&)>& act) {
    QTimer::singleShot(0, qApp, [act] {
      auto* alert = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      QVERIFY(alert);
      QVERIFY(WindowPresentation::isModalOpen());
      act(*alert);
    });
  }

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void ctrlWClosesEveryWindowAndEscapeThoseOfFixedSize_data() {
    QTest::addColumn<bool>("resizable");
    QTest::newRow("resizable") << true;
    QTest::newRow("fixed size") << false;
  }
  void ctrlWClosesEveryWindowAndEscapeThoseOfFixedSize() {
    QFETCH(bool, resizable);
    const auto window = WindowPresentation::makeWindow("Window", QSize(200, 100),
                                                       std::make_unique<QWidget>(), resizable);
    WindowPresentation::present(*window);
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_Escape);
    QCOMPARE(window->isVisible(), resizable);
    WindowPresentation::present(*window);
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_W, Qt::ControlModifier);
    QVERIFY(!window->isVisible());
  }

  void errorAlertShowsTheFailure_data() {
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<QString>("message");
    QTest::newRow("en") << AppLanguage::english << "Couldn’t Complete the Action";
    QTest::newRow("ko") << AppLanguage::korean << "작업을 완료하지 못했습니다";
  }
  void errorAlertShowsTheFailure() {
    QFETCH(AppLanguage, language);
    QFETCH(QString, message);
    Localization::shared().setLanguage(language);
    QStringList texts;
    withAlert([&texts](QDialog& alert) {
      texts = labelsOf(alert);
      alert.reject();
    });
    WindowPresentation::showError(Failure("The disk is full."));
    QCOMPARE(texts, (QStringList{message, "The disk is full."}));
    QVERIFY(!WindowPresentation::isModalOpen());
  }

  void buttonsKeepTheirOrderAndTheFirstIsTheDefault() {
    const Question question{.message = "Save?",
                            .informativeText = "Three sentences.",
                            .buttons = {"Save Session", "Don’t Save", "Cancel"},
                            .isWarning = true};
    for (int chosen = 0; chosen < 3; ++chosen) {
      withAlert([chosen](QDialog& alert) {
        QList<QPushButton*> buttons = alert.findChildren<QPushButton*>();
        std::ranges::sort(buttons, {}, [](const QPushButton* b) { return b->x(); });
        QCOMPARE(buttons.size(), 3);
        QCOMPARE(buttons[1]->text(), QString("Don’t Save"));
        QVERIFY(buttons[0]->isDefault());
        // Screen readers read the texts of an alert; a description would be read twice.
        QVERIFY(alert.accessibleDescription().isEmpty());
        // Screen readers read in this order.
        QVERIFY(alert.children().indexOf(alert.findChildren<QLabel*>().constLast()) <
                alert.children().indexOf(buttons[0]));
        QVERIFY(buttons[0]->x() < buttons[1]->x() && buttons[1]->x() < buttons[2]->x());
        buttons[chosen]->click();
      });
      QCOMPARE(WindowPresentation::ask(question), std::optional(chosen));
    }
  }

  void closingAnAlertChoosesNoButton() {
    withAlert([](QDialog& alert) { alert.close(); });
    QCOMPARE(
        WindowPresentation::ask({.message = "Save?", .informativeText = "", .buttons = {"OK"}}),
        std::nullopt);
    withAlert([](QDialog& alert) { QTest::keyClick(&alert, Qt::Key_Escape); });
    QCOMPARE(
        WindowPresentation::ask({.message = "Save?", .informativeText = "", .buttons = {"OK"}}),
        std::nullopt);
  }

  void fixedWindowKeepsItsSizeAndIsCentred() {
    const auto window = WindowPresentation::makeWindow("Export Session", QSize(420, 305),
                                                       std::make_unique<QLabel>("view"), false);
    QCOMPARE(window->windowTitle(), QString("Export Session"));
    QCOMPARE(window->minimumSize(), QSize(420, 305));
    QCOMPARE(window->maximumSize(), QSize(420, 305));
    WindowPresentation::present(*window);
    QVERIFY(window->isVisible());
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    QVERIFY((window->geometry().center() - middle).manhattanLength() <= 8);
  }

  void fixedWindowGrowsWithLongerTexts() {
    auto view = std::make_unique<QLabel>("view");
    QLabel& label = *view;
    const auto window =
        WindowPresentation::makeWindow("Export Session", QSize(200, 50), std::move(view), false);
    WindowPresentation::present(*window);
    QCOMPARE(window->size(), QSize(200, 50));
    label.setText("A text that is much longer than the window that it was given, by far");
    QTRY_VERIFY(window->width() > 200);
    QCOMPARE(window->width(), label.minimumSizeHint().width());
    QCOMPARE(window->minimumSize(), window->maximumSize());
    label.setText("view");
    QTRY_COMPARE(window->size(), QSize(200, 50));
  }

  void resizableWindowCanBeResized() {
    const auto window = WindowPresentation::makeWindow("Sessions", QSize(700, 500),
                                                       std::make_unique<QLabel>("view"), true);
    QCOMPARE(window->size(), QSize(700, 500));
    window->resize(600, 400);
    QCOMPARE(window->size(), QSize(600, 400));
    QVERIFY(window->close());
    QVERIFY(!window->isVisible());
  }
};

QTEST_MAIN(WindowPresentationTest)
#include "window_presentation_test.moc"
