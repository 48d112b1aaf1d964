// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/line_printer.h"

#include "captions/clock_text.h"
#include "model/subtitles/subtitle_files.h"

#include <algorithm>
#include <QJsonDocument>
#include <QJsonObject>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace velun {

namespace {

using std::chrono::milliseconds;

void write(std::FILE* out, const QString& text) {
  const QByteArray bytes = text.toUtf8();
  std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), out);
  std::fflush(out);
}

/// When a line was said, since the start of the captions.
milliseconds startOf(const Line& line, Instant start) {
  if (line.start) return *line.start;
  if (!line.time) return milliseconds(0);
  return std::max(std::chrono::duration_cast<milliseconds>(*line.time - start), milliseconds(0));
}

double secondsOf(milliseconds time) {
  return static_cast<double>(time.count()) / 1000;
}

class TextPrinter final : public LinePrinter {
 public:
  TextPrinter(std::FILE* out, const CaptionArguments& arguments, Instant start,
              const CaptionSession& names)
      : out_(out),
        showsTimes_(arguments.showsTimes),
        showsDrafts_(arguments.showsDrafts && isatty(fileno(out))),
        start_(start),
        session_(names) {}

  void draft(const QString& text) override {
    if (!showsDrafts_) return;
    eraseDraft();
    // The end of it: what is being said now.
    const int room = columns() - 1;
    const QString shown = text.simplified().right(room);
    write(out_, shown);
    hasDraft_ = !shown.isEmpty();
  }

  void line(const Line& line) override {
    eraseDraft();
    QString text;
    if (showsTimes_)
      text += QStringLiteral("[%1] ").arg(clockText(secondsOf(startOf(line, start_)), true));
    text += session_.named(line, line.text) + QLatin1Char('\n');
    for (const auto& [language, translation] : line.translations) {
      text += QStringLiteral("    ") + translation + QLatin1Char('\n');
    }
    write(out_, text);
  }

  void finish() override { eraseDraft(); }

 private:
  int columns() const {
    constexpr int kUsual = 80;
    winsize size{};
    return ioctl(fileno(out_), TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col : kUsual;
  }

  void eraseDraft() {
    if (std::exchange(hasDraft_, false)) write(out_, QStringLiteral("\r\x1b[K"));
  }

  std::FILE* out_;
  bool showsTimes_;
  bool showsDrafts_;
  Instant start_;
  /// Without lines; names the inputs.
  CaptionSession session_;
  bool hasDraft_ = false;
};

class SubtitlePrinter final : public LinePrinter {
 public:
  SubtitlePrinter(std::FILE* out, const CaptionArguments& arguments, Instant start,
                  const CaptionSession& names)
      : out_(out),
        output_(arguments.output),
        session_(names),
        timeline_(
            start,
            arguments.target.isEmpty() ? TranscriptContent::original : TranscriptContent::both,
            arguments.target) {
    if (output_ == CaptionOutput::webVTT) write(out_, webVTTHead());
  }

  void line(const Line& line) override { print(timeline_.add(line, session_.inputName(line))); }
  void finish() override { print(timeline_.finish()); }

 private:
  void print(const std::vector<SubtitleCue>& cues) {
    for (const SubtitleCue& cue : cues) {
      write(out_,
            output_ == CaptionOutput::webVTT ? renderWebVTT(cue) : renderSubRip(cue, ++count_));
    }
  }

  std::FILE* out_;
  CaptionOutput output_;
  /// Without lines; names the inputs.
  CaptionSession session_;
  SubtitleTimeline timeline_;
  int count_ = 0;
};

/// One object a line; the keys are those of session files where those have them.
class JsonPrinter final : public LinePrinter {
 public:
  JsonPrinter(std::FILE* out, bool showsDrafts, Instant start)
      : out_(out), showsDrafts_(showsDrafts), start_(start) {}

  void draft(const QString& text) override {
    if (showsDrafts_) print({{"draft", text}});
  }

  void line(const Line& line) override {
    QJsonObject object{{"text", line.text}, {"start", secondsOf(startOf(line, start_))}};
    if (line.end) object["end"] = secondsOf(*line.end);
    if (line.sourceLanguage) object["sourceLanguage"] = *line.sourceLanguage;
    if (line.input) object["input"] = rawValue(*line.input);
    if (line.speaker) object["speaker"] = *line.speaker;
    QJsonObject translations;
    for (const auto& [language, text] : line.translations) translations[language] = text;
    if (!translations.isEmpty()) object["translations"] = translations;
    print(object);
  }

 private:
  void print(const QJsonObject& object) {
    write(out_, QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) +
                    QLatin1Char('\n'));
  }

  std::FILE* out_;
  bool showsDrafts_;
  Instant start_;
};

}  // namespace

std::unique_ptr<LinePrinter> makeLinePrinter(const CaptionArguments& arguments, std::FILE* out,
                                             Instant start, const CaptionSession& names) {
  switch (arguments.output) {
    case CaptionOutput::text:
      return std::make_unique<TextPrinter>(out, arguments, start, names);
    case CaptionOutput::subRip:
    case CaptionOutput::webVTT:
      return std::make_unique<SubtitlePrinter>(out, arguments, start, names);
    case CaptionOutput::json:
      return std::make_unique<JsonPrinter>(out, arguments.showsDrafts, start);
  }
  Q_UNREACHABLE();
}

}  // namespace velun
