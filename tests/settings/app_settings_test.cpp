// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/app_settings.h"

#include "language/localization.h"
#include "platform/foundation/file_preferences.h"
#include "support/memory_preferences.h"
#include "support/suite.h"

#include <QSignalSpy>
#include <QTemporaryDir>

using namespace velun;

namespace {

using Change = AppSettings::Change;

/// Settings whose signals are recorded.
struct Noted {
  explicit Noted(PreferenceStore* store) : settings(store) {
    QObject::connect(&settings, &AppSettings::changed,
                     [this](Change change) { changes.push_back(change); });
  }
  AppSettings settings;
  std::vector<Change> changes;
};

void checkDefaults(const AppSettings& settings) {
  QCOMPARE(settings.language(), AppLanguage::english);
  QCOMPARE(settings.useMic(), false);
  QCOMPARE(settings.inputChoice(), InputChoice::computer);
  QCOMPARE(settings.inputName(AudioInput::computer), QString("Computer"));
  QCOMPARE(settings.inputName(AudioInput::microphone), QString("Me"));
  QCOMPARE(settings.output(), DeviceChoice());
  QCOMPARE(settings.microphone(), DeviceChoice());
  QCOMPARE(settings.program(), ProgramChoice());
  QCOMPARE(settings.localeID(), QString("en_US"));
  QCOMPARE(settings.targetID(), QString("ko"));
  QCOMPARE(settings.fontSize(), 16.0);
  QCOMPARE(settings.translate(), false);
  QCOMPARE(settings.showTranslationOnly(), false);
  QCOMPARE(settings.autoSaveSessions(), false);
  QCOMPARE(settings.askBeforeDiscarding(), true);
  QCOMPARE(settings.keepOnTop(), true);
  QCOMPARE(settings.clickThrough(), false);
  QCOMPARE(settings.hideFromScreenSharing(), false);
  QCOMPARE(settings.numbersAsDigits(), true);
  QCOMPARE(settings.userWords(), QString());
}

}  // namespace

class AppSettingsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void anEmptyStoreGivesTheDefaults_data() {
    QTest::addColumn<bool>("hasStore");
    QTest::newRow("an empty store") << true;
    QTest::newRow("no store") << false;
  }
  void anEmptyStoreGivesTheDefaults() {
    QFETCH(bool, hasStore);
    Localization::shared().setLanguage(AppLanguage::korean);
    test::MemoryPreferences store;
    const AppSettings settings(hasStore ? &store : nullptr);
    checkDefaults(settings);
    QCOMPARE(Localization::shared().language(), AppLanguage::english);
    QCOMPARE(store.writes, 0);
  }

  void storedValuesAreRead() {
    test::MemoryPreferences store;
    store.values = {{"language", QString("ko")},
                    {"useMic", true},
                    {"output", QString("hdmi")},
                    {"outputName", QString("Television")},
                    {"microphone", QString("usb-mic")},
                    {"program", QString("Firefox")},
                    {"programExcluded", true},
                    {"localeID", QString("xx_unsupported")},
                    {"targetID", QString("ja")},
                    {"fontSize", 400.0},
                    {"translate", true},
                    {"showTranslationOnly", true},
                    {"autoSaveSessions", true},
                    {"askBeforeDiscarding", false},
                    {"keepOnTop", false},
                    {"clickThrough", true},
                    {"hideFromScreenSharing", true},
                    {"numbersAsDigits", false},
                    {"userWords", QString(" Huebner \n\nhuebner\nDelhi")}};
    const AppSettings settings(&store);
    QCOMPARE(settings.language(), AppLanguage::korean);
    QCOMPARE(Localization::shared().language(), AppLanguage::korean);
    QCOMPARE(settings.useMic(), true);
    QCOMPARE(settings.output(), (DeviceChoice{"hdmi", "Television"}));
    QCOMPARE(settings.microphone(), (DeviceChoice{"usb-mic", {}}));
    QCOMPARE(settings.program(), (ProgramChoice{ProgramChoice::Scope::allBut, "Firefox"}));
    QCOMPARE(settings.localeID(), QString("xx_unsupported"));
    QCOMPARE(settings.targetID(), QString("ja"));
    QCOMPARE(settings.fontSize(), 400.0);
    QCOMPARE(settings.translate(), true);
    QCOMPARE(settings.showTranslationOnly(), true);
    QCOMPARE(settings.autoSaveSessions(), true);
    QCOMPARE(settings.askBeforeDiscarding(), false);
    QCOMPARE(settings.keepOnTop(), false);
    QCOMPARE(settings.clickThrough(), true);
    QCOMPARE(settings.hideFromScreenSharing(), true);
    QCOMPARE(settings.numbersAsDigits(), false);
    QCOMPARE(settings.userWords(), QString("Huebner\nDelhi"));
    QCOMPARE(store.writes, 0);
  }

  void aProgramIsStoredAndForgotten() {
    using Scope = ProgramChoice::Scope;
    test::MemoryPreferences store;
    AppSettings settings(&store);
    QSignalSpy changes(&settings, &AppSettings::changed);
    settings.setProgram({Scope::only, "Firefox"});
    QCOMPARE(AppSettings(&store).program(), (ProgramChoice{Scope::only, "Firefox"}));
    settings.setProgram({Scope::only, "Firefox"});
    QCOMPARE(changes.size(), 1);
    settings.setUseMic(true);
    settings.setProgram({Scope::allBut, "Firefox"});
    // The microphone is captioned as before.
    QCOMPARE(changes.size(), 2);
    settings.setProgram({Scope::all, "Firefox"});
    QCOMPARE(AppSettings(&store).program(), ProgramChoice());
    settings.setProgram({Scope::only, {}});
    QCOMPARE(settings.program(), ProgramChoice());
  }

  void bothInputsAreStoredBesideTheOneChosenLast() {
    test::MemoryPreferences store;
    AppSettings settings(&store);
    QSignalSpy changes(&settings, &AppSettings::changed);
    settings.setUseMic(true);
    QVERIFY(!store.values.contains("captionsBoth"));
    settings.setInputChoice(InputChoice::both);
    QCOMPARE(changes.size(), 2);
    QVERIFY(std::get<bool>(store.values.value("useMic")));
    QVERIFY(!settings.useMic());
    QVERIFY(settings.captions(AudioInput::computer) && settings.captions(AudioInput::microphone));
    settings.setMicrophone({"desk", "Desk"});
    settings.setOutput({"hdmi", "Television"});
    QCOMPARE(changes.size(), 4);
    QCOMPARE(AppSettings(&store).inputChoice(), InputChoice::both);
    settings.setInputChoice(InputChoice::computer);
    QVERIFY(!settings.captions(AudioInput::microphone));
    QCOMPARE(AppSettings(&store).inputChoice(), InputChoice::computer);
  }

  void inputsHaveNamesAndReadableColors() {
    test::MemoryPreferences store;
    AppSettings settings(&store);
    const QColor panel = standardStyle(PanelSet::calm).background;
    for (const AudioInput input : allAudioInputs) {
      QVERIFY(contrastRatio(panel, settings.inputLabel(input).color) >= 4.5);
    }
    settings.setInputLabel(AudioInput::microphone, {"  Ana ", QColor(10, 20, 90)});
    const AppSettings later(&store);
    QCOMPARE(later.inputName(AudioInput::microphone), QString("Ana"));
    QCOMPARE(later.inputLabel(AudioInput::microphone).color, QColor(10, 20, 90));
    QCOMPARE(later.inputName(AudioInput::computer), QString("Computer"));
    for (const PanelSet set : allPanelSets) {
      const QColor background = standardStyle(set).background;
      for (const QColor& color : {QColor(10, 20, 90), QColor(250, 250, 200), QColor(128, 128, 128)})
        QVERIFY(contrastRatio(background, readableOn(background, color)) >= 4.5);
    }
  }

  void storedValuesOfAnotherTypeGiveTheDefaults() {
    test::MemoryPreferences store;
    const QString no("no");
    for (const char* key : {"language", "useMic", "fontSize", "translate", "showTranslationOnly",
                            "autoSaveSessions", "askBeforeDiscarding", "keepOnTop", "clickThrough",
                            "hideFromScreenSharing", "numbersAsDigits"}) {
      store.values[key] = no;
    }
    store.values["localeID"] = true;
    store.values["userWords"] = true;
    store.values["targetID"] = 1.0;
    const AppSettings settings(&store);
    checkDefaults(settings);
  }

  void anUnknownLanguageGivesEnglish() {
    test::MemoryPreferences store;
    store.values["language"] = QString("fr");
    QCOMPARE(AppSettings(&store).language(), AppLanguage::english);
  }

  void everySetWritesItsKeyAlsoWhenUnchanged() {
    test::MemoryPreferences store;
    AppSettings settings(&store);
    int writes = 0;
    const auto isStored = [&store, &writes](const char* key, const PreferenceValue& value) {
      return store.writes == ++writes && store.value(key) == value;
    };
    for (int twice = 0; twice < 2; ++twice) {
      settings.setLanguage(AppLanguage::korean);
      QVERIFY(isStored("language", QString("ko")));
      settings.setUseMic(true);
      QVERIFY(isStored("useMic", true));
      settings.setLocaleID("ko_KR");
      QVERIFY(isStored("localeID", QString("ko_KR")));
      settings.setTargetID("en");
      QVERIFY(isStored("targetID", QString("en")));
      settings.setFontSize(20);
      QVERIFY(isStored("fontSize", 20.0));
      settings.setTranslate(true);
      QVERIFY(isStored("translate", true));
      settings.setShowTranslationOnly(true);
      QVERIFY(isStored("showTranslationOnly", true));
      settings.setAutoSaveSessions(true);
      QVERIFY(isStored("autoSaveSessions", true));
      settings.setAskBeforeDiscarding(false);
      QVERIFY(isStored("askBeforeDiscarding", false));
      settings.setKeepOnTop(false);
      QVERIFY(isStored("keepOnTop", false));
      settings.setHideFromScreenSharing(true);
      QVERIFY(isStored("hideFromScreenSharing", true));
      settings.setNumbersAsDigits(false);
      QVERIFY(isStored("numbersAsDigits", false));
      settings.setUserWords("Huebner");
      QVERIFY(isStored("userWords", QString("Huebner")));
    }
    QCOMPARE(store.values.size(), 13);
  }

  void changedIsEmittedOnlyForADifferentValue() {
    test::MemoryPreferences store;
    Noted noted(&store);
    noted.settings.setUseMic(false);
    noted.settings.setLocaleID("en_US");
    noted.settings.setTargetID("ko");
    noted.settings.setTranslate(false);
    QVERIFY(noted.changes.empty());
    noted.settings.setUseMic(true);
    noted.settings.setLocaleID("ko_KR");
    noted.settings.setTargetID("en");
    noted.settings.setTranslate(true);
    QVERIFY(noted.changes == (std::vector{Change::input, Change::sourceLanguage,
                                          Change::targetLanguage, Change::translation}));
  }

  void otherSettingsDoNotEmitChanged() {
    Noted noted(nullptr);
    noted.settings.setLanguage(AppLanguage::korean);
    noted.settings.setFontSize(24);
    noted.settings.setShowTranslationOnly(true);
    noted.settings.setAutoSaveSessions(true);
    noted.settings.setAskBeforeDiscarding(false);
    noted.settings.setKeepOnTop(false);
    noted.settings.setHideFromScreenSharing(true);
    noted.settings.setNumbersAsDigits(false);
    QVERIFY(noted.changes.empty());
  }

  void theValueIsStoredBeforeChangedIsEmitted() {
    test::MemoryPreferences store;
    AppSettings settings(&store);
    bool isThere = false;
    connect(&settings, &AppSettings::changed, this, [&] {
      isThere = settings.localeID() == "ko_KR" && store.get<QString>("localeID") == "ko_KR";
    });
    settings.setLocaleID("ko_KR");
    QVERIFY(isThere);
  }

  void everySetEmitsTheSignalOfItsProperty() {
    AppSettings settings;
    const QSignalSpy sizes(&settings, &AppSettings::fontSizeChanged);
    const QSignalSpy languages(&settings, &AppSettings::languageChanged);
    const QSignalSpy locales(&settings, &AppSettings::localeIDChanged);
    settings.setFontSize(16);
    settings.setLanguage(AppLanguage::english);
    settings.setLocaleID("ko_KR");
    QCOMPARE(sizes.count(), 1);
    QCOMPARE(languages.count(), 1);
    QCOMPARE(locales.count(), 1);
  }

  void theInterfaceLanguageFollowsAtOnce() {
    test::MemoryPreferences store;
    AppSettings settings(&store);
    settings.setLanguage(AppLanguage::korean);
    QCOMPARE(L("Stop", "중지"), QString("중지"));
    QCOMPARE(store.get<QString>("language"), std::optional<QString>("ko"));
    // Also when only the shared state differs.
    Localization::shared().setLanguage(AppLanguage::english);
    settings.setLanguage(AppLanguage::korean);
    QCOMPARE(L("Stop", "중지"), QString("중지"));
  }

  void laterChangesOfTheStoreAreNotRead() {
    test::MemoryPreferences store;
    const AppSettings settings(&store);
    store.values["fontSize"] = 30.0;
    QCOMPARE(settings.fontSize(), 16.0);
  }

  void settingsSurviveARestart() {
    const QTemporaryDir folder;
    const QString path = folder.filePath("preferences.json");
    {
      FilePreferences store(path);
      AppSettings settings(&store);
      settings.setLanguage(AppLanguage::korean);
      settings.setFontSize(20);
      settings.setKeepOnTop(false);
      settings.setTargetID("ja");
    }
    FilePreferences store(path);
    const AppSettings settings(&store);
    QCOMPARE(settings.language(), AppLanguage::korean);
    QCOMPARE(settings.fontSize(), 20.0);
    QCOMPARE(settings.keepOnTop(), false);
    QCOMPARE(settings.targetID(), QString("ja"));
    QCOMPARE(settings.askBeforeDiscarding(), true);
  }
};

QTEST_GUILESS_MAIN(AppSettingsTest)
#include "app_settings_test.moc"
