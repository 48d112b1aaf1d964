// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/suite.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_samples.h"
#include "ui/caption/transcript_view.h"

#include <QRandomGenerator>
#include <QScrollBar>

using namespace velun;
using test::SeenDocument;

/// Incremental changes of a transcript give the same result as building it at once.
class TranscriptReplacementTest final : public test::Suite {
  Q_OBJECT

 private:
  using Lines = TranscriptChange::Lines;

  struct Story {
    explicit Story(quint32 seed) : random(seed) { inputs.session = &session; }

    int below(qsizetype bound) {
      return static_cast<int>(random.bounded(static_cast<quint32>(bound)));
    }

    QString words() {
      static const QStringList all = {"sea",   "wall", "그리고",           "안녕", "שלום", "a\nb",
                                      "😀 yes", "",     "the storm of 1953"};
      QString text;
      for (int i = below(5); i >= 0; --i) text += all[below(all.size())] + u' ';
      return text.trimmed();
    }

    LineLabel label() {
      return below(3) ? LineLabel{words(), QColor::fromHsv(below(360), 100, 255)} : LineLabel();
    }

    /// Labels of the two inputs, or none.
    LineLabeller labeller() {
      const LineLabel computer = label();
      const LineLabel microphone = label();
      return [computer, microphone](const Line& line) {
        if (!line.input) return LineLabel();
        return line.input == AudioInput::microphone ? microphone : computer;
      };
    }

    /// Makes a random change of the session; returns the change to report to the view.
    TranscriptChange step() {
      const int lineCount = static_cast<int>(session.lines.size());
      // Paragraphs of a longer text get their formats later.
      if (lineCount > 10) {
        session = CaptionSession();
        return {};
      }
      switch (below(14)) {
        case 0:
        case 1:
        case 2:
          if (inputs.drafts.empty() || below(4) == 0) inputs.drafts.push_back({"", label()});
          inputs.drafts.back().text += u' ' + words();
          return {.lines = Lines::added};
        case 3:
        case 4:
          for (int i = below(3); i >= 0; --i) {
            session.lines.push_back(test::lineOf(words()));
            if (below(2)) inputs.pendingTranslationIDs.insert(session.lines.back().id);
          }
          inputs.drafts.clear();
          return {.lines = Lines::added};
        case 5:
        case 6: {
          if (lineCount == 0) return {.lines = Lines::added};
          const int index = below(lineCount);
          Line& line = session.lines[static_cast<std::size_t>(index)];
          line.translations[below(2) ? "ko" : "es"] = words();
          inputs.pendingTranslationIDs.remove(line.id);
          return {.lines = Lines::one, .index = index};
        }
        case 7:
          inputs.content = allTranscriptContents[static_cast<std::size_t>(below(3))];
          return {.lines = Lines::added};
        case 8:
          inputs.showsMetadata = below(2);
          inputs.showsPendingInput = below(2);
          return {.lines = Lines::added};
        case 9:
          inputs.language = below(2) ? std::optional<QString>("ko") : std::nullopt;
          return {.lines = Lines::added};
        case 10:
          if (below(4) == 0) inputs.pendingTranslationIDs.clear();
          if (below(4) == 0) inputs.fontSize = 12 + below(10);
          if (below(4) == 0) inputs.captionStyle = !inputs.captionStyle;
          return {.lines = Lines::added};
        case 11: {
          Line line = test::lineOf(words());
          line.input = below(2) ? AudioInput::computer : AudioInput::microphone;
          const int index = below(lineCount + 1);
          session.lines.insert(session.lines.begin() + index, line);
          return {.lines = Lines::from, .index = index};
        }
        case 12:
          inputs.labelOf = labeller();
          return {};
        default:
          if (below(6) == 0) session = CaptionSession();
          return {.lines = below(2) ? Lines::all : Lines::added};
      }
    }

    QRandomGenerator random;
    CaptionSession session;
    TranscriptInputs inputs;
  };

 private Q_SLOTS:
  void shownTextEqualsAFullReplacement_data() {
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 12; ++seed) QTest::addRow("%u", seed) << seed;
  }
  void shownTextEqualsAFullReplacement() {
    QFETCH(quint32, seed);
    Story story(seed);
    TranscriptView view;
    view.resize(300, 150);
    view.show();
    for (int i = 0; i < 60; ++i) {
      const TranscriptChange change = story.step();
      view.update(story.inputs, change);
      if (story.below(4) == 0) view.resize(200 + story.below(300), 100 + story.below(100));
      TranscriptView fresh;
      fresh.resize(300, 150);
      fresh.update(story.inputs);
      const SeenDocument shown(*view.textView().document());
      const SeenDocument whole(*fresh.textView().document());
      QCOMPARE(shown.text, whole.text);
      QCOMPARE(shown.blocks, whole.blocks);
      QVERIFY2(shown.runs == whole.runs, qPrintable(QStringLiteral("step %1").arg(i)));
    }
  }

  void everythingIsEventuallyLaidOut() {
    Story story(99);
    for (int i = 0; i < 3000; ++i) story.session.lines.push_back(test::lineOf(story.words()));
    TranscriptView view;
    view.resize(400, 150);
    view.show();
    view.update(story.inputs);
    view.resize(220, 150);
    TranscriptView fresh;
    fresh.resize(220, 150);
    fresh.show();
    fresh.update(story.inputs);
    const auto maximum = [](const TranscriptView& v) {
      return v.textView().verticalScrollBar()->maximum();
    };
    int before = -1;
    QTRY_VERIFY(std::exchange(before, maximum(view)) == maximum(view) &&
                maximum(view) == maximum(fresh) && maximum(view) > 0);
  }
};

QTEST_MAIN(TranscriptReplacementTest)
#include "transcript_replacement_test.moc"
