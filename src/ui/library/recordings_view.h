// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/recording_queue.h"

#include <functional>
#include <map>
#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace velun {

class RecordingRow;

/// Whether captions can be made of a file, by its name: everything but session files.
bool isRecording(const QUrl& file);

/// The recordings that are captioned, wait or are done, with their progress. Files can be dropped
/// on it. Main thread.
class RecordingsView final : public QWidget {
  Q_OBJECT

 public:
  /// Lets the user choose recordings, and shows a session that is done.
  struct Actions {
    std::function<void()> add;
    std::function<void(const QUrl&)> showSession;
    /// Removes an item, after a question if that loses captions.
    std::function<void(const RecordingQueue::Item&)> remove;
  };

  /// `queue` must outlive the view.
  RecordingsView(RecordingQueue& queue, Actions actions);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void present();
  void translate();

  RecordingQueue& queue_;
  Actions actions_;
  QVBoxLayout* list_;
  QLabel* hint_;
  QPushButton* add_;
  std::map<int, RecordingRow*> rows_;
};

}  // namespace velun
