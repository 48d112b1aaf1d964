// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/caption_text.h"

#include "platform/speech/helper/recognizer_message.h"
#include "support/suite.h"

using namespace velun;

class CaptionTextTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void tokensKeepTheirWordSpaces() {
    QCOMPARE(textOfTokens({"▁안녕", "하", "세요", "▁여러", "분"}), QString("안녕하세요 여러분"));
    QCOMPARE(textOfTokens({" he", "llo", " there"}), QString("hello there"));
    QCOMPARE(textOfTokens({}), QString());
  }

  void unprintableCharactersAreRemoved() {
    QCOMPARE(textOfTokens({"▁네", "\xEF\xBF\xBD", "\x7F", "\xEE\x80\x80", "▁그래요", "."}),
             QString("네 그래요."));
    QCOMPARE(printable("a<unk> b\x01 <0xE5> c"), QString("a b c"));
    QCOMPARE(printable("3 < 4 and 5 > 4"), QString("3 < 4 and 5 > 4"));
    QCOMPARE(printable("  two   blanks "), QString("two blanks"));
    QCOMPARE(printable("😀"), QString("😀"));
  }

  void byteTokensAreJoined() {
    QCOMPARE(textOfTokens({"▁a", "<0xE4>", "<0xB8>", "<0xAD>", "▁b"}), QString("a中 b"));
    QCOMPARE(textOfTokens({"▁a", "<0xE4>", "▁b"}), QString("a b"));
  }

  void lateMarksBelongToTheLineBefore() {
    QCOMPARE(withoutLateMarks(". How are you?"), QString("How are you?"));
    QCOMPARE(lateMarks(". How are you?"), QString("."));
    QCOMPARE(withoutLateMarks("。你好"), QString("你好"));
    QCOMPARE(withoutLateMarks("¿Qué?"), QString("¿Qué?"));
    QCOMPARE(lateMarks("¿Qué?"), QString());
    QCOMPARE(withoutLateMarks("?!"), QString());
    QCOMPARE(lateMarks("?!"), QString("?!"));
    QCOMPARE(withoutLateMarks(""), QString());
  }

  void sentencesEndWithAMark() {
    for (const char* text : {"Yes.", "Really?", "No!”", "好。", "हाँ।", "نعم؟"}) {
      QVERIFY2(endsSentence(text), text);
    }
    for (const char* text : {"Yes", "Yes,", "”", ""}) QVERIFY2(!endsSentence(text), text);
  }

  void singleCaseIsFolded() {
    QCOMPARE(cased("I THINK I'M HERE", "en", true), QString("I think I'm here"));
    QCOMPARE(cased("he said i do", "en", false), QString("He said I do"));
    QCOMPARE(cased("ÉTÉ À PARIS", "fr", true), QString("Été à paris"));
    QCOMPARE(cased("привет", "ru", false), QString("Привет"));
    QCOMPARE(cased("Already McCased", "en", false), QString("Already McCased"));
    QCOMPARE(cased("안녕하세요", "ko", false), QString("안녕하세요"));
    QCOMPARE(cased("", "en", true), QString());
  }

  void finalPunctuationCanBeRemoved() {
    QCOMPARE(withoutEnd("Hello. How are you?"), QString("Hello. How are you"));
    QCOMPARE(withoutEnd("Well..."), QString("Well"));
    QCOMPARE(withoutEnd("Well"), QString("Well"));
    QCOMPARE(withoutEnd(""), QString());
  }

  void messagesRoundTrip() {
    const QByteArray bytes = encoded(RecognizerMessage::Kind::audio, QByteArray(1000, 'x')) +
                             encoded(RecognizerMessage::Kind::finalize);
    RecognizerMessageReader reader;
    int count = 0;
    for (const char& byte : bytes) {
      reader.append(std::span(&byte, 1));
      if (const auto message = reader.next()) {
        ++count;
        QCOMPARE(message->body.size(), count == 1 ? 1000 : 0);
      }
    }
    QCOMPARE(count, 2);
    reader.append(std::span("\xff\xff\xff\xff\x01", 5));
    QVERIFY_EXCEPTION_THROWN(reader.next(), std::runtime_error);
  }
};

QTEST_GUILESS_MAIN(CaptionTextTest)
#include "caption_text_test.moc"
