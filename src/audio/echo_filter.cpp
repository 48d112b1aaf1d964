// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/echo_filter.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace velun {

namespace {

using namespace std::chrono_literals;

/// Times of words are estimated from those of their text.
constexpr auto kTolerance = 2000ms;
/// How long a played word can be heard again.
constexpr auto kMemory = 30s;
/// How long the user's loudspeakers count as on after an echo.
constexpr auto kEchoMemory = 60s;
/// A draft shows the words of this time ago at the earliest.
constexpr auto kDraftDelay = 1500ms;
/// Matching words in a row that are an echo, at first and after one was found.
constexpr std::size_t kSureRun = 4;
constexpr std::size_t kLikelyRun = 2;
/// Wrongly recognized words between two matching ones.
constexpr std::size_t kMaxGap = 2;
/// The same anywhere in a text that is mostly an echo, while the computer spoke all the time.
constexpr std::size_t kMaxRest = 3;
/// How much earlier or later an echo may begin or end.
constexpr auto kSameTime = 500ms;

/// Whether two words differ in at most `limit` letters.
bool isWithin(const QString& a, const QString& b, qsizetype limit) {
  if (std::abs(a.size() - b.size()) > limit) return false;
  std::vector<qsizetype> row(static_cast<std::size_t>(b.size()) + 1);
  for (std::size_t j = 0; j < row.size(); ++j) row[j] = static_cast<qsizetype>(j);
  for (qsizetype i = 0; i < a.size(); ++i) {
    qsizetype diagonal = row[0]++;
    for (std::size_t j = 1; j < row.size(); ++j) {
      const qsizetype changed = diagonal + (a[i] == b[static_cast<qsizetype>(j) - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back() <= limit;
}

/// Marks what stands between two matching words if it is short, and unmarks runs of fewer than
/// `minRun` matching words. Returns the length of the longest run.
std::size_t markRuns(std::vector<bool>& marks, std::size_t minRun) {
  std::size_t longest = 0;
  std::size_t begin = 0;
  while (begin < marks.size()) {
    if (!marks[begin]) {
      ++begin;
      continue;
    }
    std::size_t end = begin;
    std::size_t count = 0;
    for (std::size_t i = begin; i < marks.size() && i - end <= kMaxGap; ++i) {
      if (!marks[i]) continue;
      end = i;
      ++count;
    }
    const bool isRun = count >= minRun;
    for (std::size_t i = begin; i <= end; ++i) marks[i] = isRun;
    longest = std::max(longest, count);
    begin = end + 1;
  }
  return longest;
}

/// Marks what is not marked but for runs of more than `kMaxRest` words.
void markRests(std::vector<bool>& marks) {
  for (auto begin = marks.begin(); begin != marks.end();) {
    const auto rest = std::find(begin, marks.end(), false);
    const auto end = std::find(rest, marks.end(), true);
    if (end - rest <= static_cast<std::ptrdiff_t>(kMaxRest)) std::fill(rest, end, true);
    begin = end;
  }
}

}  // namespace

void EchoFilter::reset() {
  *this = EchoFilter();
}

std::vector<EchoFilter::Word> EchoFilter::wordsOf(const QString& text,
                                                  const FinalEvent::Spoken& spoken) {
  std::vector<Word> words;
  const Instant::duration length = spoken.end - spoken.start;
  Word word;
  for (qsizetype i = 0; i <= text.size(); ++i) {
    if (i < text.size() && !text[i].isSpace()) {
      if (word.key.isEmpty()) word.begin = i;
      if (text[i].isLetterOrNumber()) word.key += text[i].toLower();
      continue;
    }
    if (!word.key.isEmpty()) {
      word.end = i;
      word.time = spoken.start + length * word.begin / text.size();
      words.push_back(word);
    }
    word = {};
  }
  return words;
}

bool EchoFilter::isSame(const Word& a, const Word& b) {
  constexpr qsizetype kLettersPerError = 4;
  return a.key == b.key ||
         isWithin(a.key, b.key, std::min(a.key.size(), b.key.size()) / kLettersPerError);
}

bool EchoFilter::isAtOnce(const Word& a, const Word& b) {
  return std::chrono::abs(a.time - b.time) <= kTolerance;
}

void EchoFilter::addComputer(const FinalEvent& event) {
  draft_.clear();
  computerDraftStart_.reset();
  if (!event.spoken) return;
  for (Word& word : wordsOf(event.text, *event.spoken)) played_.push_back(std::move(word));
  texts_.push_back(*event.spoken);
  while (texts_.front().end < event.spoken->end - kMemory) texts_.pop_front();
  while (!played_.empty() && played_.front().time < event.spoken->end - kMemory) {
    played_.pop_front();
  }
}

void EchoFilter::setComputerDraft(const QString& text, Instant now) {
  if (text.isEmpty()) {
    computerDraftStart_.reset();
    draft_.clear();
    return;
  }
  if (!computerDraftStart_) computerDraftStart_ = now - kDraftDelay;
  draft_ = wordsOf(text, {*computerDraftStart_, now});
}

std::vector<EchoFilter::Word> EchoFilter::playedAround(const std::vector<Word>& words) const {
  std::vector<Word> around;
  const auto isNear = [&words](const Word& word) {
    return word.time >= words.front().time - kTolerance &&
           word.time <= words.back().time + kTolerance;
  };
  std::ranges::copy_if(played_, std::back_inserter(around), isNear);
  std::ranges::copy_if(draft_, std::back_inserter(around), isNear);
  return around;
}

std::vector<bool> EchoFilter::matches(const std::vector<Word>& words, bool atOnce) const {
  const std::vector<Word> played = playedAround(words);
  const std::size_t rows = words.size();
  const std::size_t columns = played.size();
  const auto isMatch = [&](std::size_t i, std::size_t j) {
    return isSame(words[i], played[j]) && (!atOnce || isAtOnce(words[i], played[j]));
  };
  std::vector<std::vector<std::size_t>> best(rows + 1, std::vector<std::size_t>(columns + 1));
  for (std::size_t i = rows; i-- > 0;) {
    for (std::size_t j = columns; j-- > 0;) {
      best[i][j] = std::max(best[i + 1][j], best[i][j + 1]);
      if (isMatch(i, j)) best[i][j] = std::max(best[i][j], best[i + 1][j + 1] + 1);
    }
  }
  std::vector<bool> marks(rows);
  for (std::size_t i = 0, j = 0; i < rows && j < columns;) {
    if (isMatch(i, j) && best[i][j] == best[i + 1][j + 1] + 1) {
      marks[i++] = true;
      ++j;
    } else if (best[i + 1][j] >= best[i][j + 1]) {
      ++i;
    } else {
      ++j;
    }
  }
  return marks;
}

bool EchoFilter::isPlayedThroughout(const FinalEvent::Spoken& spoken) const {
  return std::ranges::any_of(texts_, [&spoken](const FinalEvent::Spoken& text) {
    return spoken.start > text.start - kSameTime && spoken.end < text.end + kSameTime;
  });
}

QString EchoFilter::filtered(const QString& text, const FinalEvent::Spoken& spoken, Instant now) {
  const std::vector<Word> words = wordsOf(text, spoken);
  if (words.empty()) return text;
  // The times within a text are estimates, so a long run counts without them.
  std::vector<bool> anyTime = matches(words, false);
  bool isSure = markRuns(anyTime, kSureRun) >= kSureRun;
  std::vector<bool> marks = matches(words, true);
  const bool isLikely = lastEcho_ && now - *lastEcho_ < kEchoMemory;
  const bool isAll = std::ranges::find(marks, false) == marks.end();
  const std::size_t minRun = !isLikely ? kSureRun : isAll ? 1 : kLikelyRun;
  isSure = markRuns(marks, minRun) >= kSureRun || isSure;
  if (isSure) lastEcho_ = now;
  for (std::size_t i = 0; i < marks.size(); ++i) marks[i] = marks[i] || anyTime[i];
  const auto echoes = std::ranges::count(marks, true);
  if (echoes == 0) return text;
  if (2 * echoes >= std::ssize(marks) && isPlayedThroughout(spoken)) markRests(marks);
  QString kept;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (marks[i]) continue;
    if (!kept.isEmpty()) kept += QLatin1Char(' ');
    kept += text.mid(words[i].begin, words[i].end - words[i].begin);
  }
  return kept;
}

QString EchoFilter::withoutEcho(const FinalEvent& event, Instant now) {
  return event.spoken ? filtered(event.text, *event.spoken, now) : event.text;
}

QString EchoFilter::draftWithoutEcho(const QString& text, Instant now) {
  if (text.isEmpty()) {
    draftStart_.reset();
    return text;
  }
  if (!draftStart_) draftStart_ = now - kDraftDelay;
  return filtered(text, {*draftStart_, now}, now);
}

}  // namespace velun
