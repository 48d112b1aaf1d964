// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/echo_filter.h"

#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

namespace {

const Instant kStart{};

FinalEvent said(const QString& text, std::chrono::milliseconds from, std::chrono::milliseconds to) {
  FinalEvent event{text, "en_US", AudioInput::microphone};
  event.spoken = {kStart + from, kStart + to};
  return event;
}

/// A filter that has heard an echo, so that loudspeakers are on.
EchoFilter withLoudspeakers() {
  EchoFilter filter;
  filter.addComputer(said("welcome to the evening news", 0s, 2s));
  filter.withoutEcho(said("welcome to the evening news", 200ms, 2s), kStart + 2s);
  return filter;
}

}  // namespace

/// What the loudspeakers play is taken out of the microphone's texts; the user's words stay.
class EchoFilterTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void keepsTheUsersWords_data() {
    QTest::addColumn<QString>("played");
    QTest::addColumn<QString>("heard");
    QTest::addColumn<int>("delay");
    QTest::addColumn<QString>("kept");
    QTest::addRow("an echo") << "We meet on Monday at nine."
                             << "we meet on monday at nine" << 200 << "";
    QTest::addRow("an echo with errors") << "We meet on Monday at nine."
                                         << "we met on sunday at nine" << 200 << "";
    QTest::addRow("an echo with misheard words at its end")
        << "We meet on Monday at nine in town."
        << "we meet on monday at nine in a crown" << 200 << "";
    QTest::addRow("the user speaking for longer meanwhile")
        << "We meet on Monday at nine in town."
        << "we meet on monday at no I really cannot come that early" << 200
        << "no I really cannot come that early";
    QTest::addRow("other words") << "We meet on Monday at nine."
                                 << "No, I cannot come." << 200 << "No, I cannot come.";
    QTest::addRow("the user after an echo")
        << "We meet on Monday at nine."
        << "we meet on monday at nine That is early." << 600 << "That is early.";
    QTest::addRow("the same words later")
        << "We meet on Monday at nine."
        << "We meet on Monday at nine." << 9000 << "We meet on Monday at nine.";
    QTest::addRow("one word in common") << "We meet on Monday."
                                        << "Not Monday, please." << 200 << "Not Monday, please.";
  }
  void keepsTheUsersWords() {
    QFETCH(QString, played);
    QFETCH(QString, heard);
    QFETCH(int, delay);
    QFETCH(QString, kept);
    EchoFilter filter = withLoudspeakers();
    filter.addComputer(said(played, 10s, 13s));
    const std::chrono::milliseconds late(delay);
    QCOMPARE(filter.withoutEcho(said(heard, 10s + late, 13s + late), kStart + 15s), kept);
  }

  void shortRepetitionIsKeptUntilAnEchoWasHeard() {
    EchoFilter filter;
    filter.addComputer(said("Thank you.", 0s, 1s));
    QCOMPARE(filter.withoutEcho(said("Thank you.", 1s, 2s), kStart + 2s), QString("Thank you."));
    filter = withLoudspeakers();
    filter.addComputer(said("Thank you.", 5s, 6s));
    QCOMPARE(filter.withoutEcho(said("Thank you.", 5s, 6s), kStart + 7s), QString());
    filter.addComputer(said("Thank you.", 90s, 91s));
    QCOMPARE(filter.withoutEcho(said("Thank you.", 91s, 92s), kStart + 92s), QString("Thank you."));
  }

  void unfinishedTextOfTheComputerCounts() {
    EchoFilter filter = withLoudspeakers();
    filter.setComputerDraft("the train leaves", kStart + 11s);
    filter.setComputerDraft("the train leaves from platform nine", kStart + 12s);
    QCOMPARE(
        filter.withoutEcho(said("The train leaves from platform nine.", 9700ms, 12s), kStart + 12s),
        QString());
    QCOMPARE(filter.draftWithoutEcho("the train leaves from", kStart + 12s), QString());
    QCOMPARE(filter.draftWithoutEcho("which platform", kStart + 12s), QString("which platform"));
  }

  void textWithoutTimesIsKept() {
    EchoFilter filter = withLoudspeakers();
    const FinalEvent event{"welcome to the evening news", "en_US", AudioInput::microphone};
    QCOMPARE(filter.withoutEcho(event, kStart + 2s), event.text);
  }
};

QTEST_GUILESS_MAIN(EchoFilterTest)
#include "echo_filter_test.moc"
