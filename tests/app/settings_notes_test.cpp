// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings_notes_text.h"
#include "language/localization.h"
#include "platform/models/model_catalogue.h"
#include "settings/app_settings.h"
#include "support/fake_desktop_platform.h"
#include "support/scripted_model_store.h"
#include "support/scripted_translation_platform.h"
#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;
using namespace velun::test;

class SettingsNotesTest final : public Suite {
  Q_OBJECT

  FakeDesktopPlatform desktop_;
  ScriptedTranslationPlatform translation_;
  ScriptedModelStore models_{QString()};
  std::shared_ptr<const ModelCatalogue> catalogue_ =
      std::make_shared<const ModelCatalogue>(ModelCatalogue::builtIn());
  AppSettings settings_;
  const SettingsNotesText notes_{desktop_,   translation_, models_,
                                 catalogue_, settings_,    QStringLiteral(VELUN_LANGUAGE_MODEL)};

  QString modelOf(ModelKind kind) const { return catalogue_->ofKind(kind).front().id; }

 private Q_SLOTS:
  void cleanup() {
    Localization::shared().setLanguage(AppLanguage::english);
    models_.setBusy({});
    translation_.setActivity({});
  }

  void namesThatTheBuiltInRecognizerCannotLearnAreListed() {
    if (!QFile::exists(VELUN_LANGUAGE_MODEL)) QSKIP("the built-in model was not installed");
    QSignalSpy changed(&notes_, &SettingsNotes::changed);
    QVERIFY(notes_.unknownWords().isEmpty());
    settings_.setUserWords("Huebner\nDijkstra\nNew York\nO’Hara\nKing Zzyzx");
    QTRY_COMPARE(notes_.unknownWords(),
                 QString("The built-in recognizer cannot learn new words and does not know: "
                         "Dijkstra, King Zzyzx"));
    QCOMPARE(changed.count(), 1);
    settings_.setUserWords("Huebner");
    QTRY_VERIFY(notes_.unknownWords().isEmpty());
    QCOMPARE(changed.count(), 2);
  }

  void captureHidingFollowsTheDesktop_data() {
    QTest::addColumn<CaptureHiding>("hiding");
    QTest::addColumn<bool>("readsWithoutCast");
    QTest::addColumn<bool>("isPromised");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("korean");
    QTest::newRow("excluded by the compositor")
        << CaptureHiding::compositor << false << true
        << "This desktop excludes the caption window from screen sharing and recording."
        << "이 데스크톱은 공유·녹화되는 화면에서 자막 창을 제외합니다.";
    QTest::newRow("hidden while casting on Wayland")
        << CaptureHiding::whileCasting << false << true << "This desktop cannot exclude"
        << "이 데스크톱은 창 하나만 뺄 수 없으므로";
    QTest::newRow("hidden while casting on X11")
        << CaptureHiding::whileCasting << true << false
        << "Other people may see the caption window: in an X11 session every program can read the "
           "screen."
        << "다른 사람에게 자막 창이 보일 수 있습니다. X11 세션에서는";
    for (const bool onX11 : {false, true}) {
      QTest::newRow(onX11 ? "nothing hides it on X11" : "nothing hides it on Wayland")
          << CaptureHiding::none << onX11 << false
          << "This desktop offers no way to hide a window from screen sharing and recording. Close "
             "the caption window while you share your screen."
          << "이 데스크톱에서는 화면 공유·녹화에서 창을 숨길 수 없습니다.";
    }
  }
  void captureHidingFollowsTheDesktop() {
    QFETCH(CaptureHiding, hiding);
    QFETCH(bool, readsWithoutCast);
    QFETCH(bool, isPromised);
    QFETCH(QString, english);
    QFETCH(QString, korean);
    desktop_.can.captureHiding = hiding;
    desktop_.can.readsWithoutCast = readsWithoutCast;
    QCOMPARE(notes_.hidesFromOthers(), isPromised);
    QVERIFY2(notes_.captureHiding().startsWith(english), qPrintable(notes_.captureHiding()));
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY2(notes_.captureHiding().startsWith(korean), qPrintable(notes_.captureHiding()));
  }

  void showsRunningDownloads() {
    QCOMPARE(notes_.download(), QString());
    models_.setBusy({modelOf(ModelKind::recognition)});
    QCOMPARE(notes_.download(), QString("Downloading speech model…"));
    // The translator reports its own downloads.
    models_.setBusy({modelOf(ModelKind::translation)});
    QCOMPARE(notes_.download(), QString());
    translation_.setActivity("Downloading translation model…");
    QCOMPARE(notes_.download(), QString("Downloading translation model…"));
  }

  void changesAreAnnounced() {
    const QSignalSpy changes(&notes_, &SettingsNotes::changed);
    desktop_.setCapabilities({});
    QCOMPARE(changes.count(), 1);
    translation_.setActivity("Downloading translation model…");
    QCOMPARE(changes.count(), 2);
    models_.setBusy({modelOf(ModelKind::recognition)});
    QCOMPARE(changes.count(), 3);
  }
};

QTEST_MAIN(SettingsNotesTest)
#include "settings_notes_test.moc"
