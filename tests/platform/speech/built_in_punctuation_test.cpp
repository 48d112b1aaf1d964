// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/built_in_punctuation.h"

#include "platform/speech/built_in/sentence_writer.h"
#include "platform/speech/neural/punctuation_helper.h"
#include "platform/speech/neural_fixture.h"
#include "support/suite.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;

namespace {

const auto kFolder = QStringLiteral(VELUN_PUNCTUATION);

RecognizerSettings settings() {
  RecognizerSettings settings;
  settings.punctuationModel = kFolder + "/punctuation.onnx";
  settings.punctuationVocabulary = kFolder + "/punctuation.vocab";
  return settings;
}

/// Words of 0.3 s, a second apart where a "|" stands.
TranscriptionResult heard(const QString& text) {
  TranscriptionResult result{text, true};
  double begin = 1;
  for (const QString& word : text.split(u' ')) {
    if (word == QLatin1String("|")) {
      begin += 1;
    } else {
      result.words.push_back({word, begin, begin + 0.3, 1});
      begin += 0.3;
    }
  }
  return result;
}

}  // namespace

/// The model that is installed with the program, in the real library.
class BuiltInPunctuationTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    if (!hasRecognitionLibrary()) QSKIP("scripts/setup has not installed the library");
  }

  void textsAreWritten_data() {
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("text");
    QTest::newRow("sentences")
        << "good morning and welcome to the first lesson of the year | today "
           "we will talk about the river and the people who live beside it"
        << "Good morning and welcome to the first lesson of the year. Today "
           "we will talk about the river and the people who live beside it.";
    QTest::newRow("question") << "what do you think | can we do this next week"
                              << "What do you think? Can we do this next week?";
    QTest::newRow("comma") << "well | i think we should wait until tomorrow | what about you"
                           << "Well, I think we should wait until tomorrow. What about you?";
    QTest::newRow("names") << "thank you very much | he lives in new york and works for ibm"
                           << "Thank you very much. He lives in New York and works for IBM.";
  }
  void textsAreWritten() {
    QFETCH(QString, words);
    QFETCH(QString, text);
    const BuiltInPunctuation provider(helperProgram(), kFolder);
    SentenceWriter writer(provider.punctuationFactory("en_US")());
    writer.load();
    QCOMPARE(writer.write(heard(words)).front().text, text);
  }

  void pausesDecide() {
    const BuiltInPunctuation provider(helperProgram(), kFolder);
    const auto restorer = provider.punctuationFactory("en_US")();
    const QString ended = restorer->restored("we should try again + later we can talk about it +");
    const QString wentOn = restorer->restored("we should try again later + we can talk about it +");
    QVERIFY2(ended.contains("again."), qPrintable(ended));
    QVERIFY2(wentOn.contains("later."), qPrintable(wentOn));
  }

  void onlyUsEnglishIsKnown() {
    const BuiltInPunctuation provider(helperProgram(), kFolder);
    QVERIFY(provider.punctuationFactory("en_US"));
    QVERIFY(!provider.punctuationFactory("de_DE"));
  }

  void missingFilesAreNoProvider() {
    const QTemporaryDir folder;
    const QString none = folder.filePath("none");
    QVERIFY(!BuiltInPunctuation(helperProgram(), none).punctuationFactory("en_US"));
    QVERIFY(!BuiltInPunctuation(none, kFolder).punctuationFactory("en_US"));
  }

  void modelThatDoesNotReplyIsGivenUp_data() {
    QTest::addColumn<int>("signal");
    QTest::newRow("hangs") << SIGSTOP;
    QTest::newRow("dies") << SIGKILL;
  }
  void modelThatDoesNotReplyIsGivenUp() {
    QFETCH(int, signal);
    QVERIFY(PunctuationHelper::kReplyTimeout <= std::chrono::seconds(3));
    PunctuationHelper helper(helperProgram(), settings(), std::chrono::milliseconds(50));
    helper.load();
    kill(helper.helperProcessId(), signal);
    QCOMPARE(helper.restored("we met +"), QString("we met +"));
    QCOMPARE(helper.failure(),
             std::optional<QString>("Captions have no punctuation, because the part of Velun that "
                                    "adds it does not respond. Start captions again."));
    // It is not asked again.
    QCOMPARE(helper.restored("then i left +"), QString("then i left +"));
  }

  void programThatHangsWhileLoadingIsGivenUp() {
    PunctuationHelper helper(silentProgram(), settings(), std::chrono::milliseconds(50),
                             std::chrono::milliseconds(50));
    helper.load();
    QVERIFY(helper.failure());
    QCOMPARE(helper.restored("we met +"), QString("we met +"));
  }

  void unreadableFileIsNamedWithTheReason_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("network") << "punctuation.onnx";
    QTest::newRow("list of sums") << "SHA256SUMS";
  }
  void unreadableFileIsNamedWithTheReason() {
    QFETCH(QString, name);
    const QTemporaryDir folder;
    for (const char* each : {"punctuation.onnx", "punctuation.vocab", "SHA256SUMS"}) {
      QVERIFY(QFile::copy(kFolder + u'/' + each, folder.filePath(each)));
    }
    QVERIFY(QFile::remove(folder.filePath(name)));
    // Opening a loop of links fails for every user, also for the superuser.
    QVERIFY(QFile::link(name, folder.filePath(name)));
    const BuiltInPunctuation provider(helperProgram(), folder.path());
    const auto factory = provider.punctuationFactory("en_US");
    QVERIFY(factory);
    SentenceWriter writer(factory());
    writer.load();
    QCOMPARE(writer.failure(),
             std::optional<QString>(
                 "Captions have no punctuation, because a file of Velun cannot be read (" + name +
                 ": " + std::strerror(ELOOP) +
                 "). Check the permissions of the file and its disk, or install Velun again."));
  }

  void damagedFilesLeaveTheWords_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("network") << "punctuation.onnx";
    QTest::newRow("vocabulary") << "punctuation.vocab";
  }
  void damagedFilesLeaveTheWords() {
    QFETCH(QString, name);
    const QTemporaryDir folder;
    for (const char* each : {"punctuation.onnx", "punctuation.vocab", "SHA256SUMS"}) {
      QVERIFY(QFile::copy(kFolder + u'/' + each, folder.filePath(each)));
    }
    QFile file(folder.filePath(name));
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() / 2));
    const char byte = file.read(1).at(0);
    QVERIFY(file.seek(file.size() / 2) && file.putChar(static_cast<char>(byte ^ 0x10)));
    file.close();
    const BuiltInPunctuation provider(helperProgram(), folder.path());
    SentenceWriter writer(provider.punctuationFactory("en_US")());
    writer.load();
    QCOMPARE(writer.write(heard("we met | then i left")).front().text,
             QString("We met then I left"));
  }
};

QTEST_GUILESS_MAIN(BuiltInPunctuationTest)
#include "built_in_punctuation_test.moc"
