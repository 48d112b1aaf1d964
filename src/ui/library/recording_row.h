// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/recording_queue.h"

#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

namespace velun {

/// One recording in `RecordingsView`. Main thread.
class RecordingRow final : public QFrame {
  Q_OBJECT

 public:
  explicit RecordingRow(QWidget* parent = nullptr);

  void show(const RecordingQueue::Item& item);

 Q_SIGNALS:
  void removed();
  void retried();
  void sessionWanted();

 private:
  QLabel* name_;
  QProgressBar* progress_;
  QLabel* status_;
  QPushButton* show_;
  QPushButton* retry_;
  QPushButton* remove_;
};

}  // namespace velun
