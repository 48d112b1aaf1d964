// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/sharing_settings.h"

#include "support/memory_preferences.h"
#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;

class SharingSettingsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void nothingIsSharedUntilItIsChosen() {
    test::MemoryPreferences store;
    const SharingSettings settings(&store);
    QCOMPARE(settings.offersCaptions(), false);
    QCOMPARE(settings.captionFile(), QString());
    QCOMPARE(settings.captionFileLines(), 2);
    QCOMPARE(settings.captionFileEnd(), CaptionFileEnd::empty);
    QCOMPARE(store.writes, 0);
  }

  void choicesAreStoredAndReadAgain() {
    test::MemoryPreferences store;
    SharingSettings settings(&store);
    const QSignalSpy offers(&settings, &SharingSettings::offersCaptionsChanged);
    const QSignalSpy file(&settings, &SharingSettings::captionFileChanged);
    settings.setOffersCaptions(true);
    settings.setCaptionFile("/tmp/captions.txt");
    settings.setCaptionFileLines(4);
    settings.setCaptionFileEnd(CaptionFileEnd::remove);
    settings.setCaptionFileEnd(CaptionFileEnd::remove);
    QCOMPARE(offers.size(), 1);
    QCOMPARE(file.size(), 3);
    const SharingSettings again(&store);
    QCOMPARE(again.offersCaptions(), true);
    QCOMPARE(again.captionFile(), QString("/tmp/captions.txt"));
    QCOMPARE(again.captionFileLines(), 4);
    QCOMPARE(again.captionFileEnd(), CaptionFileEnd::remove);
  }

  void valuesOutOfRangeAreLimited() {
    test::MemoryPreferences store;
    store.values = {{"captionFileLines", 400.0}, {"captionFileEnd", QString("burn")}};
    SharingSettings settings(&store);
    QCOMPARE(settings.captionFileLines(), 10);
    QCOMPARE(settings.captionFileEnd(), CaptionFileEnd::empty);
    settings.setCaptionFileLines(0);
    QCOMPARE(settings.captionFileLines(), 1);
  }
};

QTEST_GUILESS_MAIN(SharingSettingsTest)
#include "sharing_settings_test.moc"
