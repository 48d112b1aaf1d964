// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/line_printer.h"

#include "captions/recording_progress.h"
#include "cli/terminal_progress.h"
#include "language/localization.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "written_file.h"

#include <fcntl.h>
#include <unistd.h>

using namespace std::chrono_literals;
using namespace velun;

namespace {

const Instant kStart = test::utc(2025, 3, 1, 9, 0, 0);

Line said(const QString& text, std::chrono::milliseconds start, std::chrono::milliseconds end) {
  Line line;
  line.text = text;
  line.sourceLanguage = "en_US";
  line.input = AudioInput::microphone;
  line.start = start;
  line.end = end;
  return line;
}

/// What is printed of two lines, the first translated.
QString printed(CaptionArguments arguments) {
  const test::WrittenFile out;
  const auto printer = makeLinePrinter(arguments, out.file(), kStart);
  printer->draft("We walk");
  Line first = said("We walked for nine days.", 1500ms, 3s);
  if (!arguments.target.isEmpty()) first.translations[arguments.target] = "Andamos.";
  printer->line(first);
  printer->line(said("Nobody counted.", 3723004ms, 3725s));
  printer->finish();
  return out.text();
}

/// A terminal, and what a program writes to it.
class Terminal {
 public:
  Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    grantpt(master_);
    unlockpt(master_);
    out_ = std::fopen(ptsname(master_), "r+");
  }
  ~Terminal() {
    std::fclose(out_);
    ::close(master_);
  }
  Q_DISABLE_COPY_MOVE(Terminal)

  std::FILE* file() const { return out_; }
  /// All that was written since the last call. The system passes it on in pieces, so a mark of our
  /// own tells where it ends.
  QString written() const {
    constexpr char kMark = '\a';
    std::fputc(kMark, out_);
    std::fflush(out_);
    QByteArray bytes;
    char byte = 0;
    while (::read(master_, &byte, 1) == 1 && byte != kMark) bytes.append(byte);
    return QString::fromUtf8(bytes);
  }

 private:
  int master_;
  std::FILE* out_;
};

}  // namespace

class LinePrinterTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void printsText() {
    QCOMPARE(printed({}), QString("We walked for nine days.\nNobody counted.\n"));
    QCOMPARE(printed({.showsTimes = true, .showsDrafts = true, .target = "es"}),
             QString("[0:00:01] We walked for nine days.\n    Andamos.\n"
                     "[1:02:03] Nobody counted.\n"));
  }

  void printsSubtitles() {
    QCOMPARE(printed({.output = CaptionOutput::subRip}),
             QString("1\n00:00:01,500 --> 00:00:03,000\nWe walked for nine days.\n\n"
                     "2\n01:02:03,004 --> 01:02:05,000\nNobody counted.\n\n"));
    QCOMPARE(printed({.output = CaptionOutput::webVTT, .target = "es"}),
             QString("WEBVTT\n\n00:00:01.500 --> 00:00:03.100\nWe walked for nine days.\n"
                     "Andamos.\n\n01:02:03.004 --> 01:02:05.000\nNobody counted.\n\n"));
  }

  void printsObjects() {
    QCOMPARE(printed({.output = CaptionOutput::json, .target = "es"}),
             QString("{\"end\":3,\"input\":\"microphone\",\"sourceLanguage\":\"en_US\","
                     "\"start\":1.5,\"text\":\"We walked for nine days.\","
                     "\"translations\":{\"es\":\"Andamos.\"}}\n"
                     "{\"end\":3725,\"input\":\"microphone\",\"sourceLanguage\":\"en_US\","
                     "\"start\":3723.004,\"text\":\"Nobody counted.\"}\n"));
    QVERIFY(printed({.output = CaptionOutput::json, .showsDrafts = true})
                .startsWith("{\"draft\":\"We walk\"}\n"));
  }

  void aLineWithoutSpokenTimesStartsWhenItWasFinished() {
    const test::WrittenFile out;
    const auto printer = makeLinePrinter({.showsTimes = true}, out.file(), kStart);
    Line line;
    line.text = "Late.";
    line.time = kStart + 65s;
    printer->line(line);
    QCOMPARE(out.text(), QString("[0:01:05] Late.\n"));
  }

  void draftsOnATerminalAreOverwritten() {
    const Terminal terminal;
    const auto printer = makeLinePrinter({.showsDrafts = true}, terminal.file(), kStart);
    printer->draft("We wal");
    printer->draft("We walked");
    printer->line(said("We walked.", 0ms, 1s));
    printer->draft("And");
    printer->draft({});
    printer->finish();
    const QString erase = "\r\x1b[K";
    QCOMPARE(terminal.written(),
             "We wal" + erase + "We walked" + erase + "We walked.\r\n" + "And" + erase);
    // Only the end of a long draft fits.
    printer->draft(QString(300, u'x') + " end");
    QCOMPARE(terminal.written(), QString(75, u'x') + " end");
  }

  void progressIsForTerminals() {
    const test::WrittenFile file;
    TerminalProgress(file.file()).show(10, 100, 5);
    QCOMPARE(file.text(), QString());
    const Terminal terminal;
    {
      TerminalProgress progress(terminal.file());
      progress.show(10, 100, 5);
      progress.show(10, 100, 5);
    }
    QCOMPARE(terminal.written(), QString("0:10 of 1:40, 45 s left\r\x1b[K"));
  }

  void progressSaysTheTimeLeft() {
    QCOMPARE(recordingProgress(750, 2700, 60), QString("12:30 of 45:00, 3 min left"));
    QCOMPARE(recordingProgress(3725, 7200, 1), QString("1:02:05 of 2:00:00"));
    QCOMPARE(recordingProgress(100.2, 100, 60), QString("1:40 of 1:40, 1 s left"));
    QCOMPARE(recordingProgress(12, std::nullopt, 60), QString("0:12"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(recordingProgress(750, 2700, 60), QString("45:00 중 12:30, 3분 남음"));
  }
};

QTEST_GUILESS_MAIN(LinePrinterTest)
#include "line_printer_test.moc"
