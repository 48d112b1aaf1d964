// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "platform/desktop/desktop_services.h"
#include "platform/foundation/system_clock.h"
#include "support/steady_picture.h"
#include "support/suite.h"
#include "support/virtual_display.h"
#include "ui/caption/caption_header_view.h"
#include "ui/caption/copy_transcript_button.h"
#include "ui/caption/header_button.h"
#include "ui/caption/header_state.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/transcript_view.h"
#include "ui/common/find_bar.h"
#include "ui/common/window_presentation.h"

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QTimer>

using namespace velun;

/// Takes pictures of the panel as a user sees it, for looking at, into the build folder.
class PanelPicturesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    wallpaper_.setGeometry(QGuiApplication::primaryScreen()->geometry());
    wallpaper_.show();
    QVERIFY(QTest::qWaitForWindowExposed(&wallpaper_));
    desktop_ = makeDesktopPlatform(clock_);
    QVERIFY(QDir().mkpath(VELUN_PICTURES));
  }
  void cleanup() {
    // A translation of the stage that is gone has its end still before it.
    test::settle();
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void states_data() {
    QTest::addColumn<AppLanguage>("language");
    QTest::newRow("en") << AppLanguage::english;
    QTest::newRow("ko") << AppLanguage::korean;
  }
  void states() {
    QFETCH(AppLanguage, language);
    Localization::shared().setLanguage(language);
    test::PanelStage stage({}, desktop_.get());
    stage.animateHeader();
    stage.settings.setLanguage(language);
    stage.locales = {"en_US", "ko_KR", "ja_JP"};
    stage.languages = {"en", "es", "ko"};
    stage.tasks.push_back(stage.model->loadLanguages());
    stage.controller->show();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.panel()));

    picture(stage, "stopped");
    hover(stage, true);
    picture(stage, "stopped-header");

    stage.engine->bands = {-30, -34, -28, -36, -40, -38, -44, -50, -48, -55, -60};
    stage.start();
    for (const char* text :
         {"Good morning, everyone, and thank you for coming.",
          "Today we look at how the harbour was rebuilt after the storm of 1953.",
          "The first thing the engineers noticed was that the old sea wall had not failed where "
          "everybody expected it to.",
          "It had been undermined from behind."}) {
      stage.final(text);
    }
    stage.draft("So they began with the drainage, which nobody had");
    picture(stage, "running-header");
    hover(stage, false);
    picture(stage, "running");

    stage.translation.translate = [](const QString& text) {
      return korean(text);
    };
    stage.settings.setTranslate(true);
    picture(stage, "translating");
    hover(stage, true);
    picture(stage, "translating-header");
    stage.translation.scripts.back()->translate = nullptr;
    stage.settings.setShowTranslationOnly(true);
    stage.final("That is the part of the story that I like best.");
    picture(stage, "translation-only");

    menus(stage);
    stage.view->transcript().openFindBar();
    picture(stage, "find");
    stage.view->findChild<FindBar*>()->close();
    alert(stage);
    stage.settings.setTranslate(false);
    stage.failure(L("Recognition error: the sound server went away.",
                    "인식 오류: 소리 서버가 사라졌습니다."));
    picture(stage, "error");
    hover(stage, false);
    for (int i = 0; i < 200; ++i) {
      stage.final(QStringLiteral("Sentence number %1 of a long afternoon.").arg(i));
    }
    test::settle();
    QTest::keyClick(stage.panel().focusWidget() ? stage.panel().focusWidget() : &stage.panel(),
                    Qt::Key_Tab);
    picture(stage, "long-keyboard");
  }

  void higherContrast_data() { states_data(); }
  void higherContrast() {
    QFETCH(AppLanguage, language);
    Localization::shared().setLanguage(language);
    test::FakeDesktopPlatform desktop;
    desktop.can.compositing = true;
    desktop.isHighContrast = true;
    test::PanelStage stage({}, &desktop);
    stage.settings.setLanguage(language);
    stage.translation.translate = korean;
    stage.settings.setTranslate(true);
    stage.controller->show();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.panel()));
    stage.start();
    stage.final("It had been undermined from behind.");
    stage.failure(L("Recognition error: the sound server went away.",
                    "인식 오류: 소리 서버가 사라졌습니다."));
    hover(stage, true);
    stage.panel().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&stage.panel()));
    const CopyTranscriptButton& copy = stage.view->header().state().copyButton();
    for (int i = 0; i < 30 && !copy.hasFocus(); ++i) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QVERIFY(copy.hasFocus());
    picture(stage, "contrast");
    stage.view->transcript().openFindBar();
    picture(stage, "contrast-find");
  }

  void largeTextFromTheRight() {
    test::PanelStage stage({}, desktop_.get());
    stage.settings.setFontSize(30);
    stage.languages = {"en", "ar"};
    stage.tasks.push_back(stage.model->loadLanguages());
    stage.settings.setTargetID("ar");
    stage.translation.translate = [](const QString&) {
      return QStringLiteral("صباح الخير جميعًا، وشكرًا لكم على الحضور في عام 1953.");
    };
    stage.settings.setTranslate(true);
    stage.controller->show();
    QVERIFY(QTest::qWaitForWindowExposed(&stage.panel()));
    stage.start();
    stage.final("Good morning, everyone, and thank you for coming.");
    stage.draft("So they began with the drainage");
    hover(stage, true);
    picture(stage, "large-rtl");
    stage.panel().resize(stage.panel().minimumSize());
    picture(stage, "large-rtl-smallest");
    stage.settings.setShowTranslationOnly(true);
    picture(stage, "large-rtl-only");
  }

 private:
  static QString korean(const QString& text) {
    static const QHash<QString, QString> answers = {
        {"Good morning, everyone, and thank you for coming.",
         "안녕하세요, 여러분. 와 주셔서 감사합니다."},
        {"Today we look at how the harbour was rebuilt after the storm of 1953.",
         "오늘은 1953년 폭풍 뒤에 항구가 어떻게 재건되었는지 살펴봅니다."},
        {"It had been undermined from behind.", "뒤쪽에서부터 기초가 깎여 나갔던 것입니다."}};
    return answers.value(text,
                         "기술자들이 가장 먼저 알아챈 것은 모두가 예상한 곳에서 옛 방파제가 "
                         "무너지지 않았다는 점이었습니다.");
  }

  static void hover(test::PanelStage& stage, bool hovering) {
    const QRect frame = stage.panel().geometry();
    if (hovering) {
      test::VirtualDisplay::movePointer(frame.center().x(), frame.center().y());
      QTRY_VERIFY(stage.controller->headerShown());
    } else {
      test::VirtualDisplay::movePointer(5, 5);
      QTRY_VERIFY(!stage.view->chrome().hovering());
      stage.clock.advance(std::chrono::milliseconds(1600));
    }
  }

  static void picture(const test::PanelStage& stage, const QString& name) {
    test::settle();
    const QImage shot = test::steadyPicture([&stage] {
      const QRect frame = stage.panel().geometry().marginsAdded({30, 60, 30, 30});
      return QGuiApplication::primaryScreen()
          ->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height())
          .toImage();
    });
    QVERIFY(shot.save(QStringLiteral(VELUN_PICTURES "/%1-%2.png")
                          .arg(name, rawValue(Localization::shared().language()))));
  }

  static void alert(test::PanelStage& stage) {
    QTimer::singleShot(500, qApp, [&stage] {
      QWidget* open = QApplication::activeModalWidget();
      open->move(stage.panel().pos());
      picture(stage, "alert");
      open->close();
    });
    WindowPresentation::ask(
        {.message = L("Save this session before quitting?", "종료하기 전에 이 세션을 저장할까요?"),
         .informativeText = L("The 5 sentences in this session haven’t been saved. If you don’t "
                              "save, they’ll be lost.",
                              "현재 세션의 5문장은 아직 저장되지 않았습니다. 저장하지 않으면 이 "
                              "기록은 사라집니다."),
         .buttons = {L("Save Session", "세션 저장"), L("Don’t Save", "저장하지 않음"),
                     L("Cancel", "취소")},
         .isWarning = true});
  }

  static void menus(test::PanelStage& stage) {
    CaptionHeaderView& header = stage.view->header();
    struct Menu {
      HeaderButton* button;
      const char* picture;
    };
    const Menu all[] = {{&header.inputSource(), "menu-input"},
                        {&header.translation(), "menu-translation"},
                        {&header.session(), "menu-session"}};
    for (const Menu& menu : all) {
      QTimer::singleShot(500, menu.button, [&stage, menu] {
        picture(stage, menu.picture);
        menu.button->menu()->close();
      });
      menu.button->showMenu();
    }
  }

  /// A landscape of sorts.
  struct Wallpaper final : QWidget {
    void paintEvent(QPaintEvent*) override {
      QPainter painter(this);
      QLinearGradient sky(0, 0, width() / 3.0, height());
      sky.setColorAt(0, QColor(36, 48, 94));
      sky.setColorAt(0.55, QColor(196, 110, 120));
      sky.setColorAt(1, QColor(250, 200, 140));
      painter.fillRect(rect(), sky);
    }
  };

  Wallpaper wallpaper_;
  SystemClock clock_;
  std::unique_ptr<DesktopPlatform> desktop_;
};

int main(int argc, char** argv) {
  const test::VirtualDisplay display;
  QApplication application(argc, argv);
  PanelPicturesTest suite;
  return QTest::qExec(&suite, argc, argv);
}
#include "panel_pictures_test.moc"
