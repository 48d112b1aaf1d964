// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/transcript_inputs.h"

#include <memory>
#include <QWidget>

namespace velun {

class FindBar;
class SelectableTranscriptTextView;
class TranscriptCoordinator;

/// A caption session as one selectable, scrolling block of styled text. Follows the newest text
/// while it is at the bottom and never changes the text under a selection. Main thread.
class TranscriptView final : public QWidget {
  Q_OBJECT

 public:
  explicit TranscriptView(QWidget* parent = nullptr);
  ~TranscriptView() override;

  /// Shows new inputs. `change` may leave out lines that are certainly the same as at the last
  /// call, which keeps an update as cheap with ten thousand lines as with ten.
  void update(const TranscriptInputs& inputs, const TranscriptChange& change = {});

  /// Whether the end is in view, give or take 24 points.
  bool atBottom() const;

  /// Whether newer text waits for the end of a selection.
  bool isHeld() const;
  /// Lets text that waits appear.
  void clearSelection();

  /// Opens the bar that finds text in the transcript.
  void openFindBar();

  SelectableTranscriptTextView& textView() const;

 Q_SIGNALS:
  /// Emitted from the event loop, never while the view is being laid out.
  void atBottomChanged(bool atBottom);
  void isHeldChanged(bool isHeld);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  std::unique_ptr<TranscriptCoordinator> coordinator_;
  FindBar* findBar_ = nullptr;
};

}  // namespace velun
