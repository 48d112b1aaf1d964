// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/latest_job.h"
#include "ui/library/history_view_model.h"
#include "ui/library/text_signature.h"

#include <memory>
#include <optional>
#include <QObject>
#include <QString>
#include <utility>
#include <vector>

namespace velun {

/// The form of a text that is compared in a search: case is folded, accents are kept.
QString foldedForSearch(const QString& text);

/// A range of a text, in UTF-16 units.
struct TextRange {
  qsizetype position = 0;
  qsizetype length = 0;
  bool operator==(const TextRange&) const = default;
};

/// The ranges of `text` that match `search`, at most `limit`.
std::vector<TextRange> matchesIn(const QString& text, const QString& search, std::size_t limit);

/// Searches sessions by their title and whole transcript with all translations. The folded texts
/// are built once on the thread pool, with a signature each, so that a keystroke only reads the
/// texts that probably match. Main thread.
class SessionSearch final : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// Sets the sessions to search. When few of them are new, existing folded texts are reused.
  void setSessions(const SavedSessions& sessions);

  /// The sessions that contain `text`, in their order; all of them for an empty text. Returns
  /// nullopt while the folded texts are being built: call it again after `ready`.
  std::optional<SavedSessions> matches(const QString& text);

  /// Frees the folded texts until the next search.
  void forget();

 Q_SIGNALS:
  void ready();

 private:
  struct FoldedText {
    explicit FoldedText(QString folded) : text(std::move(folded)), signature(text) {}

    QString text;
    TextSignature signature;
  };
  using Folded = std::shared_ptr<const FoldedText>;

  void startFolding();

  SavedSessions sessions_;
  /// One text per session; empty until they are built.
  std::vector<Folded> folded_;
  LatestJob folding_;
};

}  // namespace velun
