// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/recordings_view.h"

#include "language/localization.h"
#include "ui/library/recording_row.h"

#include <algorithm>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <utility>

namespace velun {

bool isRecording(const QUrl& file) {
  const QString suffix = QFileInfo(file.toLocalFile()).suffix().toLower();
  return file.isLocalFile() && suffix != QLatin1String("json") && suffix != QLatin1String("md");
}

RecordingsView::RecordingsView(RecordingQueue& queue, Actions actions)
    : queue_(queue), actions_(std::move(actions)) {
  setAcceptDrops(true);
  auto* content = new QWidget;
  list_ = new QVBoxLayout(content);
  hint_ = new QLabel;
  hint_->setWordWrap(true);
  hint_->setAlignment(Qt::AlignCenter);
  list_->addWidget(hint_);
  list_->addStretch();
  auto* area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(content);
  add_ = new QPushButton(this);
  auto* column = new QVBoxLayout(this);
  column->addWidget(area, 1);
  column->addWidget(add_, 0, Qt::AlignLeading);
  connect(add_, &QPushButton::clicked, this, [this] { actions_.add(); });
  connect(&queue_, &RecordingQueue::changed, this, &RecordingsView::present);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &RecordingsView::translate);
  translate();
}

void RecordingsView::translate() {
  add_->setText(L("Add Recordings…", "녹음 파일 추가…"));
  hint_->setText(
      L("Choose sound or video files, or drop them here. Each becomes a saved session in the "
        "recognition language of the settings; nothing leaves this computer.",
        "소리나 영상 파일을 선택하거나 여기로 끌어다 놓으세요. 파일마다 설정의 인식 언어로 "
        "저장 기록이 만들어지며, 이 컴퓨터 밖으로는 나가지 않습니다."));
  present();
}

void RecordingsView::present() {
  const std::vector<RecordingQueue::Item>& items = queue_.items();
  std::erase_if(rows_, [&items](const auto& entry) {
    const auto& [id, row] = entry;
    const bool isGone = std::ranges::find(items, id, &RecordingQueue::Item::id) == items.end();
    // Later: this may be the slot of one of its buttons.
    if (isGone) row->deleteLater();
    if (isGone) row->hide();
    return isGone;
  });
  for (const RecordingQueue::Item& item : items) {
    RecordingRow*& row = rows_[item.id];
    if (!row) {
      row = new RecordingRow;
      list_->insertWidget(list_->count() - 1, row);
      connect(row, &RecordingRow::retried, this, [this, id = item.id] { queue_.retry(id); });
      connect(row, &RecordingRow::removed, this, [this, id = item.id] {
        if (const auto* found = queue_.item(id)) actions_.remove(*found);
      });
      connect(row, &RecordingRow::sessionWanted, this, [this, id = item.id] {
        if (const auto* found = queue_.item(id)) actions_.showSession(found->session);
      });
    }
    row->show(item);
  }
  hint_->setVisible(items.empty());
}

void RecordingsView::dragEnterEvent(QDragEnterEvent* event) {
  const QList<QUrl> files = event->mimeData()->urls();
  if (std::ranges::any_of(files, isRecording)) event->acceptProposedAction();
}

void RecordingsView::dropEvent(QDropEvent* event) {
  QStringList paths;
  for (const QUrl& file : event->mimeData()->urls()) {
    if (isRecording(file)) paths.append(file.toLocalFile());
  }
  event->acceptProposedAction();
  queue_.add(paths);
}

}  // namespace velun
