// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/export_options.h"
#include "ui/caption/transcript_document.h"
#include "ui/caption/transcript_inputs.h"

#include <memory>
#include <QWidget>
#include <vector>

namespace velun {

class FindBar;
class SelectableTranscriptTextView;

/// A caption session as one selectable, scrolling block of styled text. Follows the newest text
/// while it is at the bottom and never changes the text under a selection. Main thread.
class TranscriptView final : public QWidget {
  Q_OBJECT

 public:
  explicit TranscriptView(QWidget* parent = nullptr);
  ~TranscriptView() override;

  /// Shows new inputs. `change` may exclude lines that have not changed since the last call, which
  /// makes an update as cheap with ten thousand lines as with ten.
  void update(const TranscriptInputs& inputs, const TranscriptChange& change = {});

  /// Whether the end is in view, with a tolerance of 24 points.
  bool atBottom() const { return atBottom_; }

  /// Whether newer text is held back until the selection ends.
  bool isHeld() const { return isHeld_; }
  /// Ends the selection, which shows text that was held back.
  void clearSelection();

  /// The lines that the selection touches; nullopt without a selection. The draft is not a line.
  std::optional<LineRange> selectedLines() const;

  /// The index of the line in which the cursor is; nullopt in the draft.
  std::optional<std::size_t> lineAtCursor() const;

  /// Paints a bar beside the line in which the cursor is.
  void setMarksLineAtCursor(bool marks);

  /// The index of the line at a position of the text view; nullopt in the draft.
  std::optional<std::size_t> lineAt(const QPoint& position) const;

  /// Opens the bar that searches the transcript.
  void openFindBar();

  /// The height at which the view shows this many whole lines, in points.
  int heightForLines(int lines) const;

  /// The bar that searches the transcript; null before it is first opened.
  FindBar* findBar() const { return findBar_; }

  SelectableTranscriptTextView& textView() const { return *textView_; }

 Q_SIGNALS:
  /// Emitted from the event loop, never during layout.
  void atBottomChanged(bool atBottom);
  void isHeldChanged(bool isHeld);
  /// The label of the line at `index` was clicked.
  void labelClicked(std::size_t index);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  /// The inputs for which the shown text was built, apart from its lines.
  struct Presentation {
    QUuid session;
    TranscriptContent content = TranscriptContent::both;
    std::optional<QString> language;
    bool showsMetadata = false;

    bool operator==(const Presentation&) const = default;
  };

  /// A range of the shown paragraphs and the paragraphs that replace it.
  struct Replacement {
    std::size_t first = 0;
    std::size_t count = 0;
    TranscriptParagraphs paragraphs;
    // The lines they belong to, and the number of paragraphs of each new line.
    std::size_t firstLine = 0;
    std::vector<std::uint32_t> lineSizes;
    std::size_t lineCount = 0;
  };

  void apply(const TranscriptChange& change);
  void refresh();
  Presentation presentation() const;
  std::vector<Replacement> replacements(const TranscriptChange& change) const;
  Replacement makeReplacement(std::size_t firstLine, std::size_t lineCount,
                              std::span<const Line> lines) const;
  std::optional<std::vector<std::size_t>> changedLines(const TranscriptChange& change) const;
  void applyReplacement(const Replacement& replacement);
  void replaceSizes(const Replacement& replacement);
  std::size_t paragraphsBefore(std::size_t line) const;
  std::size_t lineOfBlock(int block) const;
  /// The line whose label is at a position of the text view; nullopt if there is none.
  std::optional<std::size_t> labelAt(const QPoint& position) const;
  void clickAt(const QPoint& position);
  void clearSelectionInPlace();
  void putCursorAt(int location);
  void scrollOnJump();
  void setHeld(bool held);
  void applyHeldChange();
  void updateBottom();
  void markLineAtCursor();

  TranscriptDocument document_;
  std::unique_ptr<SelectableTranscriptTextView> textView_;
  FindBar* findBar_ = nullptr;
  TranscriptInputs inputs_;
  std::optional<Presentation> presentation_;
  // The number of paragraphs of each shown line; the draft follows them.
  std::vector<std::uint32_t> lineSizes_;
  QSet<QUuid> shownPending_;
  int lastJump_ = 0;
  bool atBottom_ = true;
  bool isHeld_ = false;
  bool marksLineAtCursor_ = false;
  bool isBottomPosted_ = false;
};

}  // namespace velun
