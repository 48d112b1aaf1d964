// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/failure.h"
#include "platform/translation/linux/apertium/apertium_backend.h"
#include "platform/translation/linux/apertium/apertium_stream.h"
#include "platform/translation/linux/apertium/apertium_translator.h"
#include "support/suite.h"

#include <csignal>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <sys/wait.h>
#include <thread>

using namespace velun;
using namespace velun::test;

namespace {

const LanguagePair kEnglishSpanish{QStringLiteral("en"), QStringLiteral("es")};

ApertiumMode englishSpanish() {
  for (ApertiumMode& mode : installedApertiumModes(ApertiumBackend::systemFolder())) {
    if (mode.pair == kEnglishSpanish) return mode;
  }
  return {};
}

// A stage that echoes texts. A text with "die" in it ends the stage; one with "hang" gets no
// response.
QStringList echo() {
  return {QStringLiteral("bash"), QStringLiteral("-c"),
          QStringLiteral("while IFS= read -r -d '' text; do "
                         "[[ $text == *die* ]] && kill -9 $$; "
                         "[[ $text == *hang* ]] || printf '%s\\0' \"$text\"; done")};
}

ApertiumMode echoMode() {
  return {kEnglishSpanish, {echo(), echo(), echo()}};
}

void writeFile(const QString& path, const QByteArray& content) {
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write(content);
}

}  // namespace

/// The built-in translator: its mode files, its stream format and what happens when a program dies.
/// English to Spanish must be installed.
class ApertiumTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void parsesAPipeline() {
    const auto stages = parseApertiumPipeline(
        QStringLiteral("lt-proc '/a b/eng.bin' | apertium-tagger -g $2 '/t.prob' | lt-proc $1 x"));
    QVERIFY(stages);
    QCOMPARE(stages->size(), std::size_t{3});
    QCOMPARE((*stages)[0], QStringList({"lt-proc", "-z", "/a b/eng.bin"}));
    QCOMPARE((*stages)[1], QStringList({"apertium-tagger", "-z", "-g", "/t.prob"}));
    QCOMPARE((*stages)[2], QStringList({"lt-proc", "-z", "-n", "x"}));
  }

  void rejectsProgramsThatCannotBeKeptRunning_data() {
    QTest::addColumn<QString>("pipeline");
    QTest::newRow("unknown program") << QStringLiteral("lt-proc a | sed s/a/b/");
    QTest::newRow("shell") << QStringLiteral("lt-proc a; lt-proc b");
    QTest::newRow("redirection") << QStringLiteral("lt-proc a > /tmp/x");
    QTest::newRow("substitution") << QStringLiteral("lt-proc `x`");
    QTest::newRow("open quote") << QStringLiteral("lt-proc 'a");
    QTest::newRow("unknown option") << QStringLiteral("lt-proc $3 a");
    QTest::newRow("empty stage") << QStringLiteral("lt-proc a | | lt-proc b");
    QTest::newRow("empty") << QString();
  }

  void rejectsProgramsThatCannotBeKeptRunning() {
    QFETCH(QString, pipeline);
    QVERIFY(!parseApertiumPipeline(pipeline));
  }

  void parsesModeNames() {
    const auto plain = parseApertiumModeName(QStringLiteral("eng-spa"));
    QVERIFY(plain && plain->pair == kEnglishSpanish && !plain->isVariety);
    const auto variety = parseApertiumModeName(QStringLiteral("spa-cat_valencia"));
    QVERIFY(variety && variety->pair.target == QStringLiteral("ca") && variety->isVariety);
    const auto sourceVariety = parseApertiumModeName(QStringLiteral("oci_aran-spa"));
    QVERIFY(sourceVariety && sourceVariety->pair.source == QStringLiteral("oc"));
    QVERIFY(!parseApertiumModeName(QStringLiteral("eng-spa-tagger")));
    QVERIFY(!parseApertiumModeName(QStringLiteral("por_BR-por_PT")));
    QVERIFY(!parseApertiumModeName(QStringLiteral("README")));
  }

  void findsModesAndPrefersThePlainLanguage() {
    const QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("spa-cat_valencia.mode")), "lt-proc valencia\n");
    writeFile(folder.filePath(QStringLiteral("spa-cat.mode")), "lt-proc plain\n");
    writeFile(folder.filePath(QStringLiteral("spa-por_BR.mode")), "lt-proc brazil\n");
    writeFile(folder.filePath(QStringLiteral("fra-cat.mode")), "sed x\n");
    const ApertiumBackend backend(folder.path());
    const std::vector<LanguagePair> expected{{QStringLiteral("es"), QStringLiteral("ca")},
                                             {QStringLiteral("es"), QStringLiteral("pt")}};
    QVERIFY(backend.installedPairs() == expected);
    QCOMPARE(installedApertiumModes(folder.path())[0].stages[0].last(), QStringLiteral("plain"));

    // Pairs can be installed and removed while the program runs.
    QVERIFY(QFile::remove(folder.filePath(QStringLiteral("spa-por_BR.mode"))));
    QCOMPARE(backend.installedPairs().size(), std::size_t{1});
    QVERIFY(ApertiumBackend(folder.filePath(QStringLiteral("none"))).installedPairs().empty());
  }

  void streamFormatKeepsEveryCharacter_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("marks") << QStringLiteral("[ ] \\ / @ ^ $ < > { } ~ # * % _ & | = + \" '");
    QTest::newRow("Hangul") << QStringLiteral("안녕하세요");
    QTest::newRow("emoji") << QStringLiteral("👩‍👩‍👧 🎉");
  }

  void streamFormatKeepsEveryCharacter() {
    QFETCH(QString, text);
    QByteArray request = apertium_stream::encode(text);
    QVERIFY(request.endsWith('\0'));
    request.chop(1);
    QCOMPARE(request.count('\0'), 0);
    QCOMPARE(apertium_stream::decode(request), text);
  }

  void anIncompleteResponseIsRejected() {
    QVERIFY(!apertium_stream::decode(QByteArray()));
    QVERIFY(!apertium_stream::decode("El gato"));
  }

  void translatesWithTheInstalledPair() {
    ApertiumTranslator translator(englishSpanish());
    QCOMPARE(translator.translate(QStringLiteral("The cat sees the white house."), {}),
             QStringLiteral("El gato ve la casa blanca."));
    // Unknown words are not marked, and no final punctuation is needed.
    QCOMPARE(translator.translate(QStringLiteral("the cat Xyzzqu"), {}),
             QStringLiteral("El gato Xyzzqu"));
  }

  void keepsEveryCharacter_data() {
    QTest::addColumn<QString>("text");
    for (const char* mark :
         {"[", "]", "\\", "/", "@", "^", "$", "<",      ">",   "{",   "}",       "~",
          "#", "*", "%",  "_", "&", "|", "👍", "한국어", "[~]", "\\~", "^Xq<b>$", "<br/>"}) {
      QTest::newRow(mark) << QString::fromUtf8(mark);
    }
  }

  void keepsEveryCharacter() {
    QFETCH(QString, text);
    static ApertiumTranslator translator(englishSpanish());
    const QString translation =
        translator.translate(QStringLiteral("The house %1 is big").arg(text), {});
    QVERIFY2(translation.contains(text), qUtf8Printable(translation));
    QVERIFY2(translation.startsWith(QStringLiteral("La casa")), qPrintable(translation));
    // The next text gets its own response.
    QCOMPARE(translator.translate(QStringLiteral("the cat"), {}), QStringLiteral("El gato"));
  }

  void translatesLongTexts() {
    ApertiumTranslator translator(englishSpanish());
    const QString translation =
        translator.translate(QStringLiteral("The cat is here. ").repeated(5000), {});
    QCOMPARE(translation.count(QStringLiteral("El gato")), 5000);
  }

  void aCrashFailsOnlyItsLine() {
    ApertiumTranslator translator(echoMode());
    QCOMPARE(translator.translate(QStringLiteral("one"), {}), QStringLiteral("one"));
    QVERIFY_EXCEPTION_THROWN(translator.translate(QStringLiteral("die"), {}), Failure);
    QCOMPARE(translator.translate(QStringLiteral("two"), {}), QStringLiteral("two"));
  }

  void retriesALineWhoseProgramWasKilled() {
    const QTemporaryDir folder;
    const QString mark = folder.filePath("was-killed");
    const QString killedOnce = QStringLiteral(
        "while IFS= read -r -d '' text; do "
        "[[ -e %1 ]] || { : > %1; kill -9 $$; }; printf '%s\\0' \"$text\"; done");
    const QStringList stage{"bash", "-c", QString(killedOnce).replace("%1", mark)};
    ApertiumTranslator translator({kEnglishSpanish, {echo(), stage, echo()}});
    QCOMPARE(translator.translate(QStringLiteral("one"), {}), QStringLiteral("one"));
    QVERIFY(QFile::exists(mark));
  }

  void restartsAProgramThatWasKilledBetweenLines() {
    ApertiumTranslator translator(englishSpanish());
    QCOMPARE(translator.translate(QStringLiteral("the cat"), {}), QStringLiteral("El gato"));
    const std::vector<pid_t> processes = translator.processes();
    QCOMPARE(processes.size(), englishSpanish().stages.size());
    for (const std::size_t victim : {std::size_t{0}, processes.size() / 2, processes.size() - 1}) {
      const pid_t process = translator.processes()[victim];
      QCOMPARE(::kill(process, SIGKILL), 0);
      // Ended but not reaped yet.
      siginfo_t info{};
      QCOMPARE(::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT), 0);
      QCOMPARE(translator.translate(QStringLiteral("the cat"), {}), QStringLiteral("El gato"));
    }
  }

  void aStoppedRequestEndsSoon() {
    ApertiumTranslator translator(echoMode());
    std::stop_source stop;
    std::jthread other([&stop] { stop.request_stop(); });
    QVERIFY_EXCEPTION_THROWN(translator.translate(QStringLiteral("hang"), stop.get_token()),
                             Cancelled);
    QCOMPARE(translator.translate(QStringLiteral("two"), {}), QStringLiteral("two"));
  }

  void missingProgramsAreReported() {
    ApertiumTranslator missing({kEnglishSpanish, {{QStringLiteral("velun-no-such-program")}}});
    QVERIFY_EXCEPTION_THROWN(missing.translate(QStringLiteral("one"), {}), Failure);
    ApertiumTranslator none({kEnglishSpanish, {}});
    QVERIFY_EXCEPTION_THROWN(none.translate(QStringLiteral("one"), {}), Failure);
  }

  void leavesNoProcessBehind() {
    std::vector<pid_t> processes;
    {
      ApertiumTranslator translator(englishSpanish());
      translator.load();
      processes = translator.processes();
    }
    QVERIFY(!processes.empty());
    for (const pid_t process : processes) QCOMPARE(::kill(process, 0), -1);
  }
};

QTEST_GUILESS_MAIN(ApertiumTest)
#include "apertium_test.moc"
