// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/model_preflight.h"

#include "platform/speech/neural_fixture.h"
#include "support/suite.h"

#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;

/// sherpa-onnx would end the helper on each of these files without an error message.
class ModelPreflightTest final : public test::Suite {
  Q_OBJECT

  QTemporaryDir dir_;

  QString write(const QString& name, const QByteArray& bytes) const {
    QFile file(dir_.filePath(name));
    if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write");
    file.write(bytes);
    return file.fileName();
  }

  static QByteArray read(const QString& name) {
    QFile file(neuralData(name));
    if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read");
    return file.readAll();
  }

  static QString refusal(const RecognizerSettings& settings) {
    try {
      checkRecognitionModel(settings);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return {};
  }

 private Q_SLOTS:
  void goodModelsAreAccepted() {
    const ModelSteps steps = checkRecognitionModel(transducer());
    QCOMPARE(steps.window, 0.37);
    QCOMPARE(steps.step, 0.32);
    QVERIFY(steps.remembersTokens);
    QVERIFY(!checkRecognitionModel(nemoCtc()).remembersTokens);
    QCOMPARE(checkRecognitionModel(zipformerCtc()).step, 0.32);
  }

  void damagedFilesAreRefused_data() {
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray good = read("nemo-ctc.int8.onnx");
    QByteArray random(50'000, 0);
    for (qsizetype i = 0; i < random.size(); ++i) random[i] = static_cast<char>(i * i * 31 + i / 7);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("random") << random;
    QTest::newRow("half") << good.left(good.size() / 2);
    QTest::newRow("cut near its end") << good.left(good.size() - 100);
    QTest::newRow("web page") << QByteArray("<!DOCTYPE html><html><body>404</body></html>\n");
    QTest::newRow("pointer") << QByteArray("version https://git-lfs.github.com/spec/v1\n");
    QTest::newRow("a note is missing") << QByteArray(good).replace("window_size", "window_sixe");
    QTest::newRow("a note is no number") << QByteArray(good).replace(
        "\x12\x02"
        "37",
        "\x12\x02"
        "-7");
    QTest::newRow("another family") << read("zipformer2-ctc.int8.onnx");
    QTest::newRow("no notes") << read("joiner.int8.onnx");
  }
  void damagedFilesAreRefused() {
    QFETCH(QByteArray, bytes);
    RecognizerSettings settings = nemoCtc();
    settings.nemoCtc = write("model.onnx", bytes);
    const QString why = refusal(settings);
    QVERIFY2(why.startsWith("model.onnx: "), qPrintable(why));
  }

  void metadataBeyondItsFieldIsRefused() {
    const QByteArray graph = "\x3a\x01g";
    // A field of two bytes, in which a text begins whose length ends behind it.
    const QByteArray note = "\x72\x02\x0a\xff\xc8\x8d\xe5\x0a";
    RecognizerSettings settings = nemoCtc();
    settings.nemoCtc = write("model.onnx", graph + note + QByteArray(50, 'x'));
    QCOMPARE(refusal(settings), QString("model.onnx: the file is cut off"));
  }

  void missingFileIsRefused() {
    RecognizerSettings settings = nemoCtc();
    settings.nemoCtc = dir_.filePath("nothing.onnx");
    QCOMPARE(refusal(settings), QString("nothing.onnx: the file cannot be read"));
    settings = transducer();
    settings.joiner = dir_.path();
    QVERIFY(!refusal(settings).isEmpty());
  }

  void kindOfTransducerIsChecked() {
    RecognizerSettings settings = transducer();
    settings.modelType = "zipformer2";
    QCOMPARE(refusal(settings), QString());
    settings.modelType = "zipformer";
    QVERIFY(refusal(settings).contains("it is of the kind \"zipformer2\""));
    settings = transducer();
    std::swap(settings.encoder, settings.decoder);
    QVERIFY(refusal(settings).contains("of an unknown kind"));
    settings = transducer();
    settings.encoder = write(
        "encoder.onnx", read("zipformer2-encoder.int8.onnx").replace("model_type", "model_typo"));
    QVERIFY(refusal(settings).contains("of an unknown kind"));
  }

  void damagedTokensAreRefused_data() {
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray good = read("tokens.txt");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no blank") << QByteArray(good).replace("<blk>", "<bla>");
    QTest::newRow("three fields") << "a b 3\n" + good;
    QTest::newRow("gap") << good.mid(good.indexOf('\n') + 1);
    QTest::newRow("no number") << good + "abc\n";
    QTest::newRow("a model") << read("joiner.int8.onnx");
  }
  void damagedTokensAreRefused() {
    QFETCH(QByteArray, bytes);
    RecognizerSettings settings = nemoCtc();
    settings.tokens = write("tokens.txt", bytes);
    const QString why = refusal(settings);
    QVERIFY2(why.startsWith("tokens.txt: "), qPrintable(why));
  }

  void tokenCanBeASpace() {
    QByteArray tokens = read("tokens.txt");
    tokens.replace("all 0\n", "0\n");
    RecognizerSettings settings = nemoCtc();
    settings.tokens = write("tokens.txt", tokens);
    QCOMPARE(refusal(settings), QString());
  }

  void punctuationModelsAreChecked() {
    RecognizerSettings settings;
    settings.punctuationModel = neuralData("punctuation.onnx");
    settings.punctuationVocabulary = neuralData("punctuation.vocab");
    checkPunctuationModel(settings);
    settings.punctuationVocabulary = neuralData("h01.wav");
    QVERIFY_EXCEPTION_THROWN(checkPunctuationModel(settings), std::runtime_error);
    settings.punctuationVocabulary = neuralData("punctuation.vocab");
    settings.punctuationModel = neuralData("nemo-ctc.int8.onnx");
    QVERIFY_EXCEPTION_THROWN(checkPunctuationModel(settings), std::runtime_error);
  }

  void settingsRoundTrip() {
    RecognizerSettings settings = transducer();
    settings.modelType = "zipformer2";
    settings.hearsLanguage = settings.foldsLetters = settings.textFromTokens = true;
    settings.tailSilenceMs = 820;
    settings.endpointSilence = 0.75;
    settings.threads = 3;
    settings.punctuationModel = "/a/ä b";
    settings.punctuationVocabulary = "/a/v";
    QCOMPARE(RecognizerSettings::fromJson(settings.toJson()), settings);
    QCOMPARE(RecognizerSettings::fromJson("nonsense"), RecognizerSettings());
  }
};

QTEST_GUILESS_MAIN(ModelPreflightTest)
#include "model_preflight_test.moc"
