// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/subtitles/cue_text.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <QTextBoundaryFinder>
#include <unicode/uchar.h>

namespace velun {

namespace {

constexpr double kImpossible = std::numeric_limits<double>::infinity();
/// A caption of one short word beside longer ones.
constexpr double kOrphanCost = 200;
constexpr double kMidClauseCost = 30;
constexpr double kClauseCost = 10;
/// Of an empty row; less for a fuller one.
constexpr double kEmptyRowCost = 20;
/// Columns. A caption or row below is an orphan if it is a single word.
constexpr int kOrphanColumns = 12;

bool isWide(char32_t character) {
  const int width = u_getIntPropertyValue(static_cast<UChar32>(character), UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH;
}

/// A piece of text that no row may break, with the space behind it.
struct Atom {
  QString text;
  /// Without the space at the end.
  int columns = 0;
  int spaces = 0;
};

void appendAtom(std::vector<Atom>& atoms, const QString& text) {
  QString trimmed = text;
  while (trimmed.endsWith(QLatin1Char(' '))) trimmed.chop(1);
  if (trimmed.isEmpty()) return;
  atoms.push_back({text, columnsOf(trimmed), static_cast<int>(text.size() - trimmed.size())});
}

/// A word that is wider than a row is broken between characters as the user sees them.
void appendWord(std::vector<Atom>& atoms, const QString& word) {
  if (columnsOf(word) <= kCueColumns) return appendAtom(atoms, word);
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, word);
  QString row;
  qsizetype from = 0;
  while (characters.toNextBoundary() >= 0) {
    const QString character = word.mid(from, characters.position() - from);
    from = characters.position();
    if (columnsOf(row) + columnsOf(character) > kCueColumns) appendAtom(atoms, row), row.clear();
    row += character;
  }
  appendAtom(atoms, row);
}

std::vector<Atom> atomsOf(const QString& text) {
  std::vector<Atom> atoms;
  QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
  qsizetype from = 0;
  while (breaks.toNextBoundary() >= 0) {
    appendWord(atoms, text.mid(from, breaks.position() - from));
    from = breaks.position();
  }
  return atoms;
}

/// How bad it is to break after a text.
double breakCost(QStringView text) {
  static const QString kSentenceEnds = QStringLiteral(".?!…。？！");
  static const QString kClauseEnds = QStringLiteral(",;:—、，；：");
  while (!text.isEmpty() && QStringLiteral(" \"'”’)]」』").contains(text.back())) text.chop(1);
  if (text.isEmpty()) return kMidClauseCost;
  if (kSentenceEnds.contains(text.back())) return 0;
  return kClauseEnds.contains(text.back()) ? kClauseCost : kMidClauseCost;
}

/// Columns. Longer texts are broken in pieces, because the time of finding the best way grows with
/// the square of the length.
constexpr int kPieceColumns = 2000;

int widthOf(const std::vector<Atom>& atoms) {
  int columns = 0;
  for (const Atom& atom : atoms) columns += atom.columns + atom.spaces;
  return columns;
}

/// Pieces that end with a sentence where one ends in their second half.
std::vector<std::vector<Atom>> piecesOf(std::vector<Atom> atoms) {
  std::vector<std::vector<Atom>> pieces(1);
  if (widthOf(atoms) <= kPieceColumns) {
    pieces[0] = std::move(atoms);
    return pieces;
  }
  int columns = 0;
  for (Atom& atom : atoms) {
    columns += atom.columns + atom.spaces;
    const bool isEnd = columns > kPieceColumns / 2 && breakCost(atom.text) == 0;
    pieces.back().push_back(std::move(atom));
    if (!isEnd && columns < kPieceColumns) continue;
    pieces.emplace_back();
    columns = 0;
  }
  if (pieces.back().empty()) pieces.pop_back();
  return pieces;
}

/// The atoms of one text and its best way into captions.
class Breaking {
 public:
  Breaking(std::vector<Atom> atoms, int maxRows) : atoms_(std::move(atoms)), maxRows_(maxRows) {
    ends_.push_back(0);
    for (const Atom& atom : atoms_) ends_.push_back(ends_.back() + atom.columns + atom.spaces);
  }

  std::vector<CueRows> into(int minCount) const {
    const int size = static_cast<int>(atoms_.size());
    const int room = kCueColumns * maxRows_;
    const int least = (columns(0, atoms_.size()) + room - 1) / room;
    for (int count = std::clamp(std::max(minCount, least), 1, size); count <= size; ++count) {
      const std::vector<CueRows> cues = intoExactly(count);
      if (!cues.empty()) return cues;
    }
    return {};
  }

 private:
  struct Step {
    double cost = kImpossible;
    int from = 0;
  };

  /// Empty if the text does not fit into so few. By dynamic programming over the atoms:
  /// `best[n][end]` is the cheapest way of the first `end` atoms into n captions.
  std::vector<CueRows> intoExactly(int count) const {
    const auto size = atoms_.size();
    std::vector<std::vector<Step>> best(static_cast<std::size_t>(count) + 1,
                                        std::vector<Step>(size + 1));
    best[0][0].cost = 0;
    for (std::size_t n = 1; n < best.size(); ++n) {
      for (std::size_t end = n; end <= size; ++end) best[n][end] = cheapest(best[n - 1], end);
    }
    if (best.back()[size].cost == kImpossible) return {};
    std::vector<CueRows> cues(static_cast<std::size_t>(count));
    std::size_t end = size;
    for (std::size_t n = best.size() - 1; n > 0; --n) {
      const auto from = static_cast<std::size_t>(best[n][end].from);
      cues[n - 1] = rows(from, end);
      end = from;
    }
    return cues;
  }

  Step cheapest(const std::vector<Step>& before, std::size_t end) const {
    Step cheapest;
    for (std::size_t from = end; from-- > 0;) {
      if (columns(from, end) > kCueColumns * maxRows_) break;
      if (before[from].cost == kImpossible || !fits(from, end)) continue;
      const double cost = before[from].cost + cueCost(from, end);
      if (cost < cheapest.cost) cheapest = {cost, static_cast<int>(from)};
    }
    return cheapest;
  }

  double cueCost(std::size_t from, std::size_t end) const {
    const bool isWhole = from == 0 && end == atoms_.size();
    const double fill = columns(from, end) / static_cast<double>(kCueColumns * maxRows_);
    double cost = kEmptyRowCost * (1 - fill) * (1 - fill);
    if (end < atoms_.size()) cost += breakCost(atoms_[end - 1].text);
    if (!isWhole && isOrphan(from, end)) cost += kOrphanCost;
    return cost;
  }

  bool isOrphan(std::size_t from, std::size_t end) const {
    return end - from == 1 && columns(from, end) < kOrphanColumns;
  }

  bool fits(std::size_t from, std::size_t end) const {
    return columns(from, end) <= kCueColumns || (maxRows_ > 1 && middle(from, end));
  }

  /// Where two rows of nearly the same length meet; none if one would be too long.
  std::optional<std::size_t> middle(std::size_t from, std::size_t end) const {
    std::optional<std::size_t> best;
    double lowest = kImpossible;
    for (std::size_t at = from + 1; at < end; ++at) {
      const int upper = columns(from, at);
      const int lower = columns(at, end);
      if (std::max(upper, lower) > kCueColumns) continue;
      double cost = std::abs(upper - lower) + breakCost(atoms_[at - 1].text);
      if (isOrphan(at, end) || isOrphan(from, at)) cost += kOrphanCost;
      if (cost < lowest) lowest = cost, best = at;
    }
    return best;
  }

  CueRows rows(std::size_t from, std::size_t end) const {
    if (columns(from, end) <= kCueColumns) return {text(from, end)};
    const std::size_t at = *middle(from, end);
    return {text(from, at), text(at, end)};
  }

  int columns(std::size_t from, std::size_t end) const {
    return ends_[end] - ends_[from] - atoms_[end - 1].spaces;
  }

  QString text(std::size_t from, std::size_t end) const {
    QString text;
    for (std::size_t i = from; i < end; ++i) text += atoms_[i].text;
    return text.trimmed();
  }

  std::vector<Atom> atoms_;
  int maxRows_;
  /// The columns before each atom.
  std::vector<int> ends_;
};

}  // namespace

int columnsOf(QStringView text) {
  int columns = 0;
  for (const char32_t character : text.toUcs4()) columns += isWide(character) ? 2 : 1;
  return columns;
}

std::vector<CueRows> breakIntoCues(const QString& text, int maxRows, int minCount) {
  std::vector<Atom> atoms = atomsOf(text.simplified());
  const double total = widthOf(atoms);
  std::vector<CueRows> cues;
  for (std::vector<Atom>& piece : piecesOf(std::move(atoms))) {
    if (piece.empty()) continue;
    const double share = minCount * (widthOf(piece) / total);
    const Breaking breaking(std::move(piece), maxRows);
    std::ranges::move(breaking.into(static_cast<int>(std::ceil(share))), std::back_inserter(cues));
  }
  return cues;
}

}  // namespace velun
