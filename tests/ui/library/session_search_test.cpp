// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_search.h"

#include "model/session_file/session_file.h"
#include "support/suite.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace velun;

namespace {

QStringList titles(const SavedSessions& sessions) {
  QStringList found;
  for (const auto& each : sessions) found.append(each->summary.title);
  return found;
}

}  // namespace

class SessionSearchTest final : public test::Suite {
  Q_OBJECT

  std::unique_ptr<QTemporaryDir> folder_;

  /// Writes a session and returns what a listing tells of it.
  std::shared_ptr<const ListedSession> session(const QString& title, const QString& text,
                                               const QString& translation = {}) const {
    CaptionSession session;
    session.title = title;
    Line line;
    line.text = text;
    if (!translation.isEmpty()) line.translations["de"] = translation;
    session.lines.push_back(line);
    QFile file(folder_->filePath(title + ".json"));
    if (!file.open(QFile::WriteOnly)) qFatal("A session was not written");
    file.write(encodeSession(session));
    return listed(QUrl::fromLocalFile(file.fileName()), session);
  }

  static QStringList found(SessionSearch& search, const QString& text) {
    search.matches(text);
    QSignalSpy ready(&search, &SessionSearch::ready);
    if (search.isReading() && !ready.wait()) return {QStringLiteral("never ready")};
    return titles(search.matches(text));
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<QTemporaryDir>();
  }

  void emptyTextFindsEverything() {
    SessionSearch search;
    search.setSessions({session("One", "river"), session("Two", "sea")});
    QCOMPARE(titles(search.matches(QString())), QStringList({"One", "Two"}));
    QVERIFY(!search.isReading());
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

  void sessionsThatMayMatchAreFoundAtOnce() {
    SessionSearch search;
    SavedSessions sessions = {session("One", "river")};
    search.setSessions(sessions);
    QCOMPARE(titles(search.matches("river")), QStringList({"One"}));
    sessions.push_back(session("Two", "a river too"));
    search.setSessions(sessions);
    QCOMPARE(titles(search.matches("river")), QStringList({"One", "Two"}));
  }

  void sessionsThatCannotMatchAreNotRead() {
    SessionSearch search;
    search.setSessions({session("One", "river")});
    QVERIFY(search.matches("mountain").empty());
    QVERIFY(!search.isReading());
  }

  void aSessionThatOnlyLooksAlikeIsLeftOutOnceItIsRead() {
    // All its letters, pairs and triples, but not the text.
    SessionSearch search;
    search.setSessions({session("One", "abcda bcdab")});
    QCOMPARE(titles(search.matches("abcdab")), QStringList({"One"}));
    QCOMPARE(found(search, "abcdab"), QStringList());
    // Known already.
    QVERIFY(search.matches("abcdab").empty());
    QVERIFY(!search.isReading());
  }

  void aFileThatHasGoneMatchesNothing() {
    SessionSearch search;
    search.setSessions({session("One", "river")});
    QVERIFY(QFile::remove(folder_->filePath("One.json")));
    QCOMPARE(found(search, "river"), QStringList());
  }

  void findingsOfAnotherTextAreDiscarded() {
    SessionSearch search;
    search.setSessions({session("One", "river"), session("Two", "river bank")});
    QCOMPARE(found(search, "river b"), QStringList({"Two"}));
    QCOMPARE(found(search, "river"), QStringList({"One", "Two"}));
    QCOMPARE(found(search, "river ba"), QStringList({"Two"}));
  }

  void findingsOfFormerSessionsAreDiscarded() {
    SessionSearch search;
    search.setSessions({session("Old", "river")});
    search.matches("river");
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
