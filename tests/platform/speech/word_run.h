// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/observed_run.h"
#include "support/await.h"
#include "support/word_backend.h"

#include <QRegularExpression>
#include <QTest>

namespace velun::test {

/// A run of three recognizers of words.
struct WordRun : ObservedRun {
  void start() { ObservedRun::start(recognizers); }

  /// Word by word.
  void say(int first, int last) {
    for (int word = first; word <= last; ++word) input->yield({spoken(word, word)});
  }
  /// Long enough to end a phrase.
  void pause() {
    for (int i = 0; i < 6; ++i) input->yield({pauseOf(1)});
  }
  /// Says two words, and the recognizer dies at the second once. Waits for the words.
  void die(const WordRecognizer& recognizer, int word) {
    recognizer.script->fatalWord = word + 1;
    recognizer.script->deathsLeft = 1;
    say(word, word + 1);
    pause();
    const qsizetype before = finals.size();
    QVERIFY(QTest::qWaitFor([&] { return finals.size() > before; }, 60'000));
  }

  /// The last draft; null before the first.
  QString draft() const { return drafts.value(drafts.size() - 1); }

  WordRecognizer a{"A"};
  WordRecognizer b{"B"};
  WordRecognizer c{"C"};
  std::vector<SpeechRecognizer> recognizers = {a.recognizer(), b.recognizer(), c.recognizer()};
};

inline QStringList numbers(int first, int last) {
  QStringList all;
  for (int each = first; each <= last; ++each) all << QString::number(each);
  return all;
}

/// The words without the names of their recognizers.
inline QStringList numbersIn(const QStringList& finals) {
  QString text = finals.join(u' ');
  return text.remove(QRegularExpression("[A-Z]")).split(u' ', Qt::SkipEmptyParts);
}

}  // namespace velun::test
