// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "support/steady_picture.h"
#include "support/suite.h"
#include "support/virtual_display.h"
#include "ui/models/group_header.h"
#include "ui/models/models_fixture.h"
#include "ui/settings/settings_window_controller.h"

#include <QApplication>
#include <QDir>
#include <QStyle>
#include <QStyleFactory>

using namespace velun;

/// Takes pictures of the page "Languages & Models" as a user sees it, for looking at, into the
/// build folder: both languages, light and dark.
class ModelsPicturesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(QDir().mkpath(VELUN_PICTURES));
    QApplication::setStyle(QStyleFactory::create("Fusion"));
  }

  void pictures_data() {
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<bool>("isDark");
    QTest::newRow("en-light") << AppLanguage::english << false;
    QTest::newRow("en-dark") << AppLanguage::english << true;
    QTest::newRow("ko-light") << AppLanguage::korean << false;
    QTest::newRow("ko-dark") << AppLanguage::korean << true;
  }
  void pictures() {
    QFETCH(AppLanguage, language);
    QFETCH(bool, isDark);
    QPalette dark(QColor(45, 45, 48), QColor(37, 37, 40));
    dark.setColor(QPalette::Base, QColor(30, 30, 32));
    QApplication::setPalette(isDark ? dark : QApplication::style()->standardPalette());
    test::ModelsFixture f(ModelCatalogue::builtIn());
    f.settings.setLanguage(language);
    const std::vector<Model> speech = f.catalogue.ofKind(ModelKind::recognition);
    f.store.setInstalled(speech.front());
    ModelState half;
    half.stage = ModelState::Stage::downloading;
    half.doneBytes = 57'000'000;
    half.bytesPerSecond = 3'100'000;
    half.secondsLeft = 25;
    f.store.setState(speech[1], half);
    const ModelServices services = f.services();
    SettingsWindowController controller(
        f.captions, [] {}, nullptr, &services);
    QWidget& window = controller.window();
    QTRY_VERIFY(!f.captions.locales().isEmpty());
    controller.showModels();
    controller.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    for (GroupHeader* header : window.findChildren<GroupHeader*>()) {
      if (header->accessibleName().contains(languageName("fr_FR"))) header->setOpen(true);
    }
    const QImage picture = test::steadyPicture([&window] { return window.grab().toImage(); });
    const QString name = QString("models-%1.png").arg(QTest::currentDataTag());
    QVERIFY(picture.save(QDir(VELUN_PICTURES).filePath(name)));
  }

  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }
};

int main(int argc, char** argv) {
  const test::VirtualDisplay display;
  QApplication application(argc, argv);
  ModelsPicturesTest suite;
  return QTest::qExec(&suite, argc, argv);
}
#include "models_pictures_test.moc"
