// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "support/manual_clock.h"
#include "support/memory_preferences.h"
#include "support/scripted_recognizer.h"
#include "support/scripted_speech_platform.h"
#include "support/scripted_translation_platform.h"
#include "support/steady_picture.h"
#include "support/suite.h"
#include "support/virtual_display.h"
#include "ui/common/window_look.h"
#include "ui/library/export_view.h"
#include "ui/library/history_view.h"
#include "ui/library/history_window_controller.h"
#include "ui/settings/settings_window_controller.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QTemporaryDir>

using namespace velun;
using namespace std::chrono_literals;

namespace {

QPalette darkPalette() {
  QPalette palette(QColor(45, 45, 48), QColor(37, 37, 40));
  palette.setColor(QPalette::Base, QColor(30, 30, 32));
  palette.setColor(QPalette::Highlight, QColor(53, 110, 190));
  return palette;
}

}  // namespace

/// Takes pictures of the library's windows as a user sees them, for looking at, into the build
/// folder: both languages, light and dark, and with higher contrast.
class LibraryPicturesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(QDir().mkpath(VELUN_PICTURES));
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    light_ = QApplication::palette();
  }

  void pictures_data() {
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<bool>("isHighContrast");
    QTest::newRow("en-light") << AppLanguage::english << false << false;
    QTest::newRow("en-dark") << AppLanguage::english << true << false;
    QTest::newRow("ko-light") << AppLanguage::korean << false << false;
    QTest::newRow("ko-dark") << AppLanguage::korean << true << false;
    QTest::newRow("en-light-contrast") << AppLanguage::english << false << true;
    QTest::newRow("ko-dark-contrast") << AppLanguage::korean << true << true;
  }
  void pictures() {
    QFETCH(AppLanguage, language);
    QFETCH(bool, isDark);
    QFETCH(bool, isHighContrast);
    QApplication::setPalette(isDark ? darkPalette() : light_);
    WindowLook look;
    look.set(ColorScheme::any, isHighContrast, false);
    const auto restore = qScopeGuard([&look] { look.set(ColorScheme::any, false, false); });
    Localization::shared().setLanguage(language);
    const QTemporaryDir folder;
    test::ManualClock clock;
    clock.advance(10h);
    writeSessions(folder.path(), clock.now());
    test::MemoryPreferences preferences;
    preferences.set("language", rawValue(language));
    AppSettings settings(&preferences);
    SessionStore store;
    store.directory = QUrl::fromLocalFile(folder.path());
    HistoryViewModel library(store, [](const QUrl&) {});
    HistoryWindowController history(library, settings, {}, clock);
    QSignalSpy reloaded(&library, &HistoryViewModel::reloaded);
    history.show();
    QVERIFY(reloaded.wait());
    library.select(library.sessions().front()->url);
    picture(history.window(), "library");
    history.view().findChild<QLineEdit*>("search")->setText("river");
    picture(history.window(), "library-search");
    history.window().hide();

    test::ScriptedTranslationPlatform translation;
    translation.languages = {"ko", "es", "de"};
    test::ScriptedSpeechPlatform speech;
    speech.script->locales = {"en_US", "ko_KR", "de_DE"};
    CaptionViewModel model(settings, store,
                           std::make_unique<test::ScriptedRecognizer>(
                               std::make_shared<test::ScriptedRecognizer::Script>()),
                           speech, translation, clock);
    SettingsWindowController settingsWindow(model, {}, nullptr);
    auto* pages = settingsWindow.window().findChild<QListWidget*>();
    for (int row = 0; row < pages->count(); ++row) {
      pages->setCurrentRow(row);
      picture(settingsWindow.window(), QStringLiteral("settings-%1").arg(row));
    }
    ExportView exporting(library.selectedSession()->session, {}, {}, {});
    exporting.resize(420, 345);
    picture(exporting, "export");
  }

 private:
  static void writeSessions(const QString& folder, Instant now) {
    const char* titles[] = {"Caption Session", "Hydrology lecture", "Weekly call", "자막 세션"};
    const int days[] = {0, 1, 4, 40};
    for (int i = 0; i < 4; ++i) {
      CaptionSession session;
      session.title = QString::fromUtf8(titles[i]);
      session.startedAt = now - std::chrono::days(days[i]);
      for (const char* text : {"Today we talk about rivers.", "A river never stands still.",
                               "It carries sand from the hills down to the sea."}) {
        Line line;
        line.text = text;
        line.time = session.startedAt;
        line.sourceLanguage = "en_US";
        line.input = AudioInput::computer;
        if (i != 2) line.translations["ko"] = "오늘은 강에 대해 이야기합니다.";
        session.lines.push_back(line);
      }
      QFile file(folder + QStringLiteral("/%1.json").arg(i));
      QVERIFY(file.open(QFile::WriteOnly));
      file.write(encodeSession(session));
    }
  }

  static void picture(QWidget& window, const QString& name) {
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QImage shot = test::steadyPicture([&window] { return window.grab().toImage(); });
    const QString path = QStringLiteral(VELUN_PICTURES "/%1-%2.png")
                             .arg(name, QString::fromUtf8(QTest::currentDataTag()));
    QVERIFY(shot.save(path));
  }

  QPalette light_;
};

int main(int argc, char** argv) {
  const test::VirtualDisplay display;
  QApplication application(argc, argv);
  LibraryPicturesTest suite;
  return QTest::qExec(&suite, argc, argv);
}
#include "library_pictures_test.moc"
