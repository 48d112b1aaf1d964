// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/caption_session.h"
#include "model/session_file/session_file.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

namespace {

CaptionSession talk() {
  CaptionSession session;
  const auto add = [&session](const char* text, AudioInput input, std::chrono::milliseconds start) {
    Line line;
    line.text = text;
    line.input = input;
    line.start = start;
    line.end = start + 1s;
    session.lines.push_back(line);
  };
  add("How are you?", AudioInput::computer, 1s);
  add("Fine.", AudioInput::microphone, 3s);
  return session;
}

QString exported(const CaptionSession& session, SessionFormat format) {
  ExportOptions options;
  options.format = format;
  return QString::fromUtf8(session.exportAs(options));
}

}  // namespace

/// The names of inputs in files of sessions for which both were captioned.
class InputNamesTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void everyExportNamesTheInputs_data() {
    QTest::addColumn<SessionFormat>("format");
    QTest::addColumn<QString>("text");
    QTest::addRow("Markdown") << SessionFormat::markdown << "Original · Unknown language · Ana\n";
    QTest::addRow("text") << SessionFormat::text << "Original · Unknown language · Ana\nFine.";
    QTest::addRow("table") << SessionFormat::markdownTable << "| Ana | Fine. |";
    QTest::addRow("web page") << SessionFormat::html << "<td dir=\"auto\">Ana</td>";
    QTest::addRow("SubRip") << SessionFormat::subRip << "\nAna: Fine.\n";
    QTest::addRow("WebVTT") << SessionFormat::webVTT << "\nAna: Fine.\n";
    QTest::addRow("session") << SessionFormat::json << "\"microphoneName\" : \"Ana\"";
  }
  void everyExportNamesTheInputs() {
    QFETCH(SessionFormat, format);
    QFETCH(QString, text);
    CaptionSession session = talk();
    QVERIFY(!exported(session, format).contains("Ana"));
    session.computerName = "Computer";
    session.microphoneName = "Ana";
    const QString file = exported(session, format);
    QVERIFY2(file.contains(text), qPrintable(file));
  }

  void soDoesTheExportOfSomeLines() {
    CaptionSession session = talk();
    session.computerName = "Computer";
    session.microphoneName = "Ana";
    ExportOptions options;
    options.format = SessionFormat::subRip;
    options.lines = LineRange{.first = 1, .count = 1};
    const QString file = QString::fromUtf8(session.exportAs(options));
    QVERIFY2(file.contains("\nAna: Fine.\n") && !file.contains("Computer"), qPrintable(file));
  }

  void copiedTextNamesTheInputs() {
    CaptionSession session = talk();
    const auto text = [&session] {
      return session.transcript(TranscriptContent::original, {});
    };
    QCOMPARE(text(), QString("How are you?\n\nFine."));
    session.microphoneName = "Ana";
    QCOMPARE(text(), QString("How are you?\n\nAna: Fine."));
  }

  void namesAreReadBack() {
    CaptionSession session = talk();
    session.computerName = "Class";
    session.microphoneName = "Ana";
    const CaptionSession read = decodeSession(encodeSession(session));
    QCOMPARE(read.computerName, session.computerName);
    QCOMPARE(read.microphoneName, session.microphoneName);
  }
};

QTEST_GUILESS_MAIN(InputNamesTest)
#include "input_names_test.moc"
