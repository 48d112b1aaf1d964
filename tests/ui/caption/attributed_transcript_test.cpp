// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/attributed_transcript.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/caption/transcript_formats.h"
#include "ui/caption/transcript_samples.h"

#include <QPalette>

using namespace velun;
using test::lineOf;

class AttributedTranscriptTest final : public test::Suite {
  Q_OBJECT

 private:
  static QString textOf(const TranscriptInputs& inputs) {
    QStringList texts;
    for (const TranscriptParagraph& paragraph : attributedTranscript(inputs)) {
      texts << paragraph.text;
    }
    return texts.join(u'\n');
  }

  static TranscriptInputs inputsOf(const CaptionSession& session) {
    TranscriptInputs inputs;
    inputs.session = &session;
    return inputs;
  }

  static QString stylesOf(const TranscriptInputs& inputs) {
    QString styles;
    for (const TranscriptParagraph& paragraph : attributedTranscript(inputs)) {
      styles += "bmtp"[static_cast<int>(paragraph.style)];
    }
    return styles;
  }

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void emptyInputsYieldNoText() {
    const CaptionSession session;
    QVERIFY(attributedTranscript(inputsOf(session)).empty());
    QVERIFY(attributedTranscript({}).empty());
  }

  void listeningPlaceholderIsTheOnlyText() {
    const CaptionSession session;
    TranscriptInputs inputs;
    inputs.session = &session;
    inputs.content = TranscriptContent::translation;
    inputs.showsPendingInput = true;
    const TranscriptParagraphs paragraphs = attributedTranscript(inputs);
    QCOMPARE(paragraphs.size(), 1U);
    QCOMPARE(paragraphs[0].text, QString(" "));
    QCOMPARE(paragraphs[0].style, TranscriptStyle::placeholder);
    QCOMPARE(paragraphs[0].pendingLabel, QString("Listening"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(attributedTranscript(inputs)[0].pendingLabel, QString("음성 입력 중"));
  }

  void pendingLinesShowOnlyInTranslationMode() {
    CaptionSession session;
    session.lines = {lineOf("One."), lineOf("Two.", {{"ko", "둘."}})};
    TranscriptInputs inputs;
    inputs.session = &session;
    inputs.language = "ko";
    inputs.pendingTranslationIDs = {session.lines[0].id};
    QCOMPARE(textOf(inputs), QString("One.\nTwo.\n둘."));
    QCOMPARE(stylesOf(inputs), QString("bbt"));
    inputs.content = TranscriptContent::translation;
    QCOMPARE(textOf(inputs), QString(" \n둘."));
    QCOMPARE(attributedTranscript(inputs)[0].pendingLabel, QString("Translating"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(attributedTranscript(inputs)[0].pendingLabel, QString("번역 중"));
    inputs.content = TranscriptContent::original;
    QCOMPARE(textOf(inputs), QString("One.\nTwo."));
  }

  void draftFollowsTheLinesExceptInTranslationMode() {
    CaptionSession session;
    session.lines = {lineOf("One.")};
    TranscriptInputs inputs;
    inputs.session = &session;
    inputs.drafts = {{"and then"}};
    QCOMPARE(textOf(inputs), QString("One.\nand then"));
    QCOMPARE(stylesOf(inputs), QString("bb"));
    inputs.content = TranscriptContent::translation;
    QCOMPARE(textOf(inputs), QString());
  }

  void labelsStandBeforeTheFirstTextOfALineAndOfADraft() {
    CaptionSession session;
    session.lines = {lineOf("Hello.\nYes.", {{"ko", "안녕."}}), lineOf("And you?")};
    session.lines[0].input = AudioInput::microphone;
    TranscriptInputs inputs = inputsOf(session);
    inputs.labelOf = [](const Line& line) {
      return line.input ? LineLabel{"Me", Qt::cyan} : LineLabel();
    };
    inputs.drafts = {{"one", {"Computer", Qt::yellow}}, {"", {"Me", Qt::cyan}}, {"two", {}}};
    QCOMPARE(textOf(inputs), QString("Me: Hello.\nYes.\n안녕.\nAnd you?\nComputer: one\ntwo"));
    const TranscriptParagraphs paragraphs = attributedTranscript(inputs);
    QCOMPARE(paragraphs[0].labelLength, 4);
    QCOMPARE(paragraphs[0].labelColor, QColor(Qt::cyan));
    QCOMPARE(paragraphs[1].labelLength, 0);
    QCOMPARE(paragraphs[4].labelLength, 10);
    inputs.content = TranscriptContent::translation;
    inputs.showsMetadata = true;
    QVERIFY2(textOf(inputs).contains("\nMe: 안녕.\n"), qPrintable(textOf(inputs)));
  }

  void metadataNamesTimeInputAndLanguage() {
    CaptionSession session;
    Line line = lineOf("Hello.", {{"ko", "안녕."}});
    line.time = std::chrono::sys_days(std::chrono::year(2025) / 3 / 7) + std::chrono::hours(9);
    line.input = AudioInput::microphone;
    line.sourceLanguage = "en_US";
    line.legacyTranslation = "Hola.";
    session.lines = {line};
    TranscriptInputs inputs;
    inputs.session = &session;
    inputs.showsMetadata = true;
    QCOMPARE(textOf(inputs), line.timestamp() +
                                 " · Microphone · English (United States)\nHello.\n"
                                 "Translation · Korean\n안녕.\n"
                                 "Translation · Unknown language\nHola.\n");
    QCOMPARE(stylesOf(inputs), QString("mbmtmtb"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(textOf(inputs), line.timestamp() +
                                 " · 마이크 · 영어(미국)\nHello.\n"
                                 "번역 · 한국어\n안녕.\n"
                                 "번역 · 언어 미상\nHola.\n");
  }

  void emptyPartsOfTheMetadataAreDropped() {
    CaptionSession session;
    Line line = lineOf("Hello.");
    line.input = AudioInput::computer;
    session.lines = {line};
    TranscriptInputs inputs;
    inputs.session = &session;
    inputs.showsMetadata = true;
    QCOMPARE(textOf(inputs), QString("Computer\nHello.\n").replace("Computer", title(*line.input)));
  }

  void lineBreaksInATextMakeParagraphs() {
    CaptionSession session;
    session.lines = {lineOf("a\nb\r\nc\rd\u2029e")};
    const TranscriptParagraphs paragraphs = attributedTranscript(inputsOf(session));
    QCOMPARE(paragraphs.size(), 5U);
    QCOMPARE(paragraphs[2].text, QString("c"));
  }

  void stylesFollowTheInputs() {
    TranscriptInputs inputs;
    inputs.fontSize = 20;
    inputs.captionStyle = true;
    TranscriptFormats formats(inputs, QPalette());
    QCOMPARE(formats.charFormat(TranscriptStyle::body).foreground().color(), QColor(Qt::white));
    QCOMPARE(formats.charFormat(TranscriptStyle::body).fontPointSize(), 15.0);
    QCOMPARE(formats.charFormat(TranscriptStyle::meta).fontPointSize(), 11 * 0.75);
    QCOMPARE(formats.charFormat(TranscriptStyle::meta).foreground().color().alphaF(), 0.65F);
    QCOMPARE(formats.charFormat(TranscriptStyle::translation).foreground().color().alphaF(), 0.65F);
    QCOMPARE(formats.charFormat(TranscriptStyle::placeholder),
             formats.charFormat(TranscriptStyle::body));
    QCOMPARE(formats.blockFormat().lineHeight(), 20 * 0.15);
    QCOMPARE(formats.blockFormat().bottomMargin(), 20 * 0.35);
    inputs.content = TranscriptContent::translation;
    formats = TranscriptFormats(inputs, QPalette());
    QCOMPARE(formats.charFormat(TranscriptStyle::translation).foreground().color(),
             QColor(Qt::white));
  }

  void ordinaryWindowUsesTheDesktopColours() {
    QPalette palette;
    palette.setColor(QPalette::Text, Qt::darkBlue);
    const TranscriptFormats formats({}, palette);
    QCOMPARE(formats.charFormat(TranscriptStyle::body).foreground().color(), QColor(Qt::darkBlue));
    QCOMPARE(formats.charFormat(TranscriptStyle::translation).foreground().color().alphaF(), 0.72F);
  }
};

QTEST_MAIN(AttributedTranscriptTest)
#include "attributed_transcript_test.moc"
