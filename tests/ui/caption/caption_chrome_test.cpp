// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_chrome.h"

#include "support/manual_clock.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

class CaptionChromeTest final : public test::Suite {
  Q_OBJECT

 private:
  struct Stage {
    test::ManualClock clock;
    QStringList asked;
    bool pointerInside = false;
    bool covers = false;
    CaptionChrome chrome{
        clock,
        {.setHeaderVisible = [this](bool visible) { asked << (visible ? "show" : "hide"); },
         .isPointerInside = [this] { return pointerInside; },
         .wouldCoverPointer =
             [this] {
               return covers;
             }}};
  };

 private Q_SLOTS:
  void showsAtOnceAndHidesAfterOneAndAHalfSeconds() {
    Stage stage;
    stage.chrome.setHovering(true);
    QCOMPARE(stage.asked, QStringList{"show"});
    stage.chrome.setHovering(false);
    stage.clock.advance(1499ms);
    QCOMPARE(stage.asked, QStringList{"show"});
    stage.clock.advance(1ms);
    QCOMPARE(stage.asked, (QStringList{"show", "hide"}));
    QVERIFY(!stage.chrome.showsChrome());
  }

  void waitsForAPointerThatItWouldCover() {
    Stage stage;
    stage.covers = true;
    stage.chrome.setHovering(true);
    stage.clock.advance(399ms);
    QVERIFY(stage.asked.isEmpty());
    // The pointer passes by.
    stage.chrome.setHovering(false);
    stage.clock.advance(10s);
    QVERIFY(stage.asked.isEmpty());
    stage.chrome.setHovering(true);
    stage.clock.advance(400ms);
    QCOMPARE(stage.asked, QStringList{"show"});
  }

  void theKeyboardDoesNotWaitForThePointer() {
    Stage stage;
    stage.covers = true;
    stage.chrome.setHovering(true);
    stage.chrome.setKeyboardInHeader(true);
    QCOMPARE(stage.asked, QStringList{"show"});
  }

  void returningInTimeKeepsTheHeader() {
    Stage stage;
    stage.chrome.setHovering(true);
    stage.chrome.setHovering(false);
    stage.clock.advance(1400ms);
    stage.chrome.setHovering(true);
    stage.clock.advance(10s);
    QCOMPARE(stage.asked, QStringList{"show"});
  }

  void lockingHidesTheHeaderAtOnceAndForGood() {
    Stage stage;
    stage.pointerInside = true;
    stage.chrome.setHovering(true);
    stage.chrome.setLocked(true);
    QCOMPARE(stage.asked, (QStringList{"show", "hide"}));
    stage.chrome.setHovering(false);
    stage.chrome.setKeyboardInHeader(true);
    stage.chrome.setHovering(true);
    stage.clock.advance(10s);
    QCOMPARE(stage.asked.size(), 2);
    stage.chrome.setLocked(false);
    QCOMPARE(stage.asked, (QStringList{"show", "hide", "show"}));
  }

  void openMenuKeepsTheHeader() {
    Stage stage;
    stage.chrome.setHovering(true);
    stage.chrome.setMenuTracking(true);
    stage.chrome.setHovering(false);
    stage.clock.advance(10s);
    QCOMPARE(stage.asked, QStringList{"show"});
    stage.chrome.setMenuTracking(false);
    stage.clock.advance(1499ms);
    QCOMPARE(stage.asked, QStringList{"show"});
    stage.clock.advance(1ms);
    QCOMPARE(stage.asked, (QStringList{"show", "hide"}));
  }

  void focusInTheHeaderKeepsIt() {
    Stage stage;
    stage.chrome.setKeyboardInHeader(true);
    stage.clock.advance(10s);
    QCOMPARE(stage.asked, QStringList{"show"});
    stage.chrome.setKeyboardInHeader(false);
    stage.clock.advance(2s);
    QCOMPARE(stage.asked, (QStringList{"show", "hide"}));
  }

  void grabbedPointerKeepsTheHeader() {
    Stage stage;
    stage.pointerInside = true;
    stage.chrome.setHovering(true);
    stage.chrome.setHovering(false);
    stage.clock.advance(10s);
    QCOMPARE(stage.asked, QStringList{"show"});
    stage.pointerInside = false;
    stage.clock.advance(2s);
    QCOMPARE(stage.asked, (QStringList{"show", "hide"}));
  }
};

QTEST_GUILESS_MAIN(CaptionChromeTest)
#include "caption_chrome_test.moc"
