// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library/history_view_model.h"

#include <memory>
#include <optional>
#include <QObject>
#include <QString>
#include <vector>

namespace velun {

/// A text as it is compared when searching: without case, accents kept.
QString foldedForSearch(const QString& text);

/// A stretch of a text, in UTF-16 units.
struct TextRange {
  qsizetype position = 0;
  qsizetype length = 0;
  bool operator==(const TextRange&) const = default;
};

/// Where `search` stands in `text`, compared as when searching; at most `limit` places.
std::vector<TextRange> matchesIn(const QString& text, const QString& search, std::size_t limit);

/// Finds sessions by their title and whole transcript, all translations included. The folded texts
/// are made once by a worker, so that a keystroke costs one pass over them. Main thread.
class SessionSearch final : public QObject {
  Q_OBJECT

 public:
  explicit SessionSearch(QObject* parent = nullptr);
  ~SessionSearch() override;

  /// Searches these sessions from now on; when few are new, what was folded before is kept.
  void setSessions(const SavedSessions& sessions);

  /// Which sessions hold `text`, in their order; all of them for an empty text. None while the
  /// folded texts are being made: `ready` follows, and asking again answers.
  std::optional<SavedSessions> matches(const QString& text);

  /// Frees the folded texts until the next search.
  void forget();

 Q_SIGNALS:
  void ready();

 private:
  using Folded = std::shared_ptr<const QString>;

  void foldInBackground();

  SavedSessions sessions_;
  /// One text a session; empty while they are not made.
  std::vector<Folded> folded_;
  bool isFolding_ = false;
  quint64 token_ = 0;
};

}  // namespace velun
