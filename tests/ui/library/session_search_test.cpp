// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_search.h"

#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;

namespace {

std::shared_ptr<const SavedSession> session(const QString& title, const QString& text,
                                            const QString& translation = {}) {
  auto saved = std::make_shared<SavedSession>();
  saved->url = QUrl::fromLocalFile("/sessions/" + title + ".json");
  saved->session.title = title;
  Line line;
  line.text = text;
  if (!translation.isEmpty()) line.translations["de"] = translation;
  saved->session.lines.push_back(line);
  return saved;
}

QStringList titles(const SavedSessions& sessions) {
  QStringList found;
  for (const auto& each : sessions) found.append(each->session.title);
  return found;
}

}  // namespace

class SessionSearchTest final : public test::Suite {
  Q_OBJECT

  static QStringList found(SessionSearch& search, const QString& text) {
    auto matches = search.matches(text);
    if (!matches) {
      QSignalSpy ready(&search, &SessionSearch::ready);
      if (!ready.wait()) return {QStringLiteral("never ready")};
      matches = search.matches(text);
    }
    return titles(*matches);
  }

 private Q_SLOTS:
  void emptyTextFindsEverything() {
    SessionSearch search;
    search.setSessions({session("One", "river"), session("Two", "sea")});
    const auto all = search.matches(QString());
    QVERIFY(all);
    QCOMPARE(titles(*all), QStringList({"One", "Two"}));
  }

  void searchesTitlesTextsAndTranslationsIgnoringCase() {
    SessionSearch search;
    search.setSessions({session("Lecture", "The river"), session("Call", "The sea", "das Meer"),
                        session("Talk", "Nothing")});
    QCOMPARE(found(search, "LECTURE"), QStringList({"Lecture"}));
    QCOMPARE(found(search, "RIVER"), QStringList({"Lecture"}));
    QCOMPARE(found(search, "DAS MEER"), QStringList({"Call"}));
    QCOMPARE(found(search, "the"), QStringList({"Lecture", "Call"}));
    QCOMPARE(found(search, "mountain"), QStringList());
  }

  void accentsAreSignificant() {
    SessionSearch search;
    search.setSessions({session("A", "café"), session("B", "cafe"), session("C", "STRASSE")});
    QCOMPARE(found(search, "CAFÉ"), QStringList({"A"}));
    QCOMPARE(found(search, "cafe"), QStringList({"B"}));
    QCOMPARE(found(search, "straße"), QStringList({"C"}));
    QCOMPARE(found(search, "하"), QStringList());
  }

  void newSessionIsFoundAtOnce() {
    SessionSearch search;
    SavedSessions sessions = {session("One", "river")};
    search.setSessions(sessions);
    QCOMPARE(found(search, "river"), QStringList({"One"}));
    sessions.push_back(session("Two", "a river too"));
    search.setSessions(sessions);
    QVERIFY(search.matches("river"));
    QCOMPARE(found(search, "river"), QStringList({"One", "Two"}));
  }

  void outdatedFoldingIsDiscarded() {
    SessionSearch search;
    search.setSessions({session("Old", "river")});
    QVERIFY(!search.matches("river"));
    search.setSessions({session("New", "river")});
    QCOMPARE(found(search, "river"), QStringList({"New"}));
  }

  void matchesHaveRangesInTheText() {
    using Ranges = std::vector<TextRange>;
    QCOMPARE(matchesIn("River, river", "RIVER", 10), Ranges({{0, 5}, {7, 5}}));
    QCOMPARE(matchesIn("die Straße dort", "STRASSE", 10), Ranges({{4, 6}}));
    QCOMPARE(matchesIn("Straße, STRASSE, straße!", "Strasse", 10),
             Ranges({{0, 6}, {8, 7}, {17, 6}}));
    QCOMPARE(matchesIn("ß", "s", 10), Ranges({{0, 1}}));
    QCOMPARE(matchesIn("The ﬁnal ﬂoor", "final", 10), Ranges({{4, 4}}));
    QCOMPARE(matchesIn("a a a a", "a", 2).size(), std::size_t{2});
    QCOMPARE(matchesIn("text", "", 10), Ranges());
    QCOMPARE(matchesIn("😀 Emoji", "emoji", 10), Ranges({{3, 5}}));
  }
};

QTEST_GUILESS_MAIN(SessionSearchTest)
#include "session_search_test.moc"
