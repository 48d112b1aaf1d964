// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_encoder.h"

#include "model/session_file/session_file.h"
#include "support/session_samples.h"
#include "support/suite.h"

#include <random>

using namespace velun;

class SessionEncoderTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void encodesAnEmptySession() {
    CaptionSession session = test::longSession(0);
    SessionEncoder encoder;
    QCOMPARE(encoder.encode(session), encodeSession(session));
    session.lines = test::longSession(1).lines;
    QCOMPARE(encoder.encode(session), encodeSession(session));
  }

  void encodesAnUnchangedSessionAgain() {
    const CaptionSession session = test::longSession(3);
    SessionEncoder encoder;
    encoder.encode(session);
    QCOMPARE(encoder.encode(session), encodeSession(session));
  }

  void encodesAnotherSessionCompletely() {
    SessionEncoder encoder;
    encoder.encode(test::longSession(5));
    CaptionSession other = test::longSession(8);
    other.id = QUuid::createUuid();
    QCOMPARE(encoder.encode(other), encodeSession(other));
  }

  void encodesASessionWithFewerLinesCompletely() {
    SessionEncoder encoder;
    encoder.encode(test::longSession(5));
    const CaptionSession shorter = test::longSession(4);
    QCOMPARE(encoder.encode(shorter), encodeSession(shorter));
  }

  void unreportedChangesAreNotEncoded() {
    CaptionSession session = test::longSession(3);
    SessionEncoder encoder;
    encoder.encode(session);
    session.lines[1].text = "changed";
    QVERIFY(encoder.encode(session) != encodeSession(session));
    encoder.lineChanged(1);
    QCOMPARE(encoder.encode(session), encodeSession(session));
  }

  void ignoresChangesOfMissingLines() {
    SessionEncoder encoder;
    encoder.lineChanged(7);
    const CaptionSession session = test::longSession(3);
    QCOMPARE(encoder.encode(session), encodeSession(session));
    encoder.lineChanged(99);
    QCOMPARE(encoder.encode(session), encodeSession(session));
  }

  void earlierResultsStayUnchanged() {
    CaptionSession session = test::longSession(3);
    SessionEncoder encoder;
    const QByteArray first = encoder.encode(session);
    const QByteArray expected = encodeSession(session);
    session.lines.push_back(test::longSession(4).lines.back());
    encoder.encode(session);
    QCOMPARE(first, expected);
  }

  void randomEditsGiveTheBytesOfACompleteEncoding_data() {
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 20; ++seed) QTest::addRow("seed %u", seed) << seed;
  }
  void randomEditsGiveTheBytesOfACompleteEncoding() {
    QFETCH(unsigned, seed);
    std::mt19937 random(seed);
    const auto below = [&random](std::size_t limit) {
      return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    const auto someText = [&] {
      static const QStringList kPieces = {"river", "한국어", "😀", "\"", "\\", "/", "\n", " "};
      QString text;
      for (std::size_t i = below(8); i > 0; --i) {
        text += kPieces[static_cast<qsizetype>(below(static_cast<std::size_t>(kPieces.size())))];
      }
      return text;
    };
    CaptionSession session = test::longSession(below(4));
    SessionEncoder encoder;
    const auto append = [&] {
      Line line;
      line.text = someText();
      if (below(2)) line.time = session.startedAt;
      if (below(2)) line.input = AudioInput::microphone;
      session.lines.push_back(line);
    };
    const auto change = [&] {
      if (session.lines.empty()) return;
      const std::size_t index = below(session.lines.size());
      session.lines[index].translations[below(2) ? "ko" : "en"] = someText();
      encoder.lineChanged(index);
    };
    for (int round = 0; round < 200; ++round) {
      for (std::size_t edits = below(4); edits > 0; --edits) {
        switch (below(6)) {
          case 0:
          case 1:
            append();
            break;
          case 2:
          case 3:
            change();
            break;
          case 4:
            session.title = someText();
            break;
          default:
            session.endedAt = below(2) ? std::optional(session.startedAt) : std::nullopt;
        }
      }
      QCOMPARE(encoder.encode(session), encodeSession(session));
      if (below(50) == 0) encoder.reset();
      if (below(50) == 0) session.id = QUuid::createUuid();
    }
  }
};

QTEST_GUILESS_MAIN(SessionEncoderTest)
#include "session_encoder_test.moc"
