// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/transcript_document.h"

#include <QObject>
#include <QPointer>
#include <vector>

namespace velun {

class SelectableTranscriptTextView;

/// Brings the text of a transcript view up to date with its inputs: when it may be changed, what
/// becomes of the selection and where it is scrolled to. One per view. Main thread.
class TranscriptCoordinator final : public QObject {
  Q_OBJECT

 public:
  explicit TranscriptCoordinator(QWidget& view);
  ~TranscriptCoordinator() override;

  SelectableTranscriptTextView& textView() const { return *textView_; }
  const TranscriptInputs& inputs() const { return inputs_; }

  void update(const TranscriptInputs& inputs, const TranscriptChange& change);
  /// The same inputs again, after the interface's language, font or colours changed.
  void refresh();

  bool atBottom() const { return atBottom_; }
  /// A change waits for the end of a selection.
  bool isHeld() const { return isHeld_; }

 Q_SIGNALS:
  void atBottomChanged(bool atBottom);
  void isHeldChanged(bool isHeld);

 private:
  /// What the shown text was last built for.
  struct Presentation {
    QUuid session;
    TranscriptContent content = TranscriptContent::both;
    std::optional<QString> language;
    bool showsMetadata = false;

    bool operator==(const Presentation&) const = default;
  };

  /// A part of the shown text that is to become other paragraphs.
  struct Replacement {
    std::size_t first = 0;
    std::size_t count = 0;
    TranscriptParagraphs paragraphs;
    // The lines they belong to, and how many paragraphs each of those makes.
    std::size_t firstLine = 0;
    std::vector<std::uint32_t> lineSizes;
    std::size_t lineCount = 0;
  };

  void apply(const TranscriptChange& change);
  Presentation presentation() const;
  std::vector<Replacement> replacements(const TranscriptChange& change) const;
  Replacement replacementOf(std::size_t firstLine, std::size_t lineCount,
                            std::span<const Line> lines) const;
  std::optional<std::vector<std::size_t>> changedLines(const TranscriptChange& change) const;
  void show(const Replacement& replacement);
  std::size_t paragraphsBefore(std::size_t line) const;
  void clearSelectionInPlace();
  void putCursorAt(int location);
  void obeyJump();
  void setHeld(bool held);
  void retry();
  void updateBottom();

  TranscriptDocument document_;
  QPointer<SelectableTranscriptTextView> textView_;
  TranscriptInputs inputs_;
  std::optional<Presentation> presentation_;
  // How many paragraphs each shown line makes; what follows is the draft.
  std::vector<std::uint32_t> lineSizes_;
  QSet<QUuid> shownPending_;
  int lastJump_ = 0;
  bool atBottom_ = true;
  bool isHeld_ = false;
  bool isBottomPosted_ = false;
};

}  // namespace velun
