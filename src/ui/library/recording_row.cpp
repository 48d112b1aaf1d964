// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/recording_row.h"

#include "language/localization.h"

#include <cmath>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace velun {

namespace {

using State = RecordingQueue::State;

constexpr int kSteps = 1000;

QString stateText(const RecordingQueue::Item& item) {
  switch (item.state) {
    case State::waiting:
      return L("Waiting", "대기 중");
    case State::running:
      return item.progress.isEmpty() ? L("Opening the recording…", "녹음을 여는 중…")
                                     : item.progress;
    case State::done:
      return item.error.isEmpty()
                 ? L("Done. The session is among the saved sessions.",
                     "완료되었습니다. 저장 기록에서 볼 수 있습니다.")
                 : L("Only a part was captioned, which is among the saved sessions. %1",
                     "일부만 자막으로 만들었으며 저장 기록에서 볼 수 있습니다. %1")
                       .arg(item.error);
    case State::failed:
      break;
  }
  return item.error;
}

QString statusText(const RecordingQueue::Item& item) {
  const QString text = stateText(item);
  return item.remark.isEmpty() ? text : text + QLatin1Char('\n') + item.remark;
}

}  // namespace

RecordingRow::RecordingRow(QWidget* parent)
    : QFrame(parent),
      name_(new QLabel(this)),
      progress_(new QProgressBar(this)),
      status_(new QLabel(this)),
      show_(new QPushButton(this)),
      retry_(new QPushButton(this)),
      remove_(new QPushButton(this)) {
  setFrameShape(QFrame::StyledPanel);
  name_->setTextFormat(Qt::PlainText);
  name_->setWordWrap(true);
  QFont bold = name_->font();
  bold.setWeight(QFont::DemiBold);
  name_->setFont(bold);
  status_->setTextFormat(Qt::PlainText);
  status_->setWordWrap(true);
  // A name without blanks would make the row wider than the window. The tool tip shows it whole.
  for (QLabel* each : {name_, status_}) {
    each->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  }
  progress_->setTextVisible(false);
  auto* buttons = new QHBoxLayout;
  for (QPushButton* each : {show_, retry_, remove_}) buttons->addWidget(each);
  auto* column = new QVBoxLayout(this);
  column->addWidget(name_);
  column->addWidget(progress_);
  column->addWidget(status_);
  buttons->insertStretch(0);
  column->addLayout(buttons);
  connect(show_, &QPushButton::clicked, this, &RecordingRow::sessionWanted);
  connect(retry_, &QPushButton::clicked, this, &RecordingRow::retried);
  connect(remove_, &QPushButton::clicked, this, &RecordingRow::removed);
}

void RecordingRow::show(const RecordingQueue::Item& item) {
  const QString name = QFileInfo(item.path).fileName();
  name_->setText(name);
  setToolTip(item.path);
  status_->setText(statusText(item));
  progress_->setVisible(item.state == State::running);
  // Without a known length the bar only shows that it goes on.
  progress_->setRange(0, item.fraction ? kSteps : 0);
  progress_->setValue(static_cast<int>(std::lround(item.fraction.value_or(0) * kSteps)));
  progress_->setAccessibleName(L("Progress of “%1”", "“%1” 진행률").arg(name));
  const bool isEnded = item.state == State::done || item.state == State::failed;
  show_->setText(L("Show Session", "기록 보기"));
  show_->setVisible(item.state == State::done);
  retry_->setText(L("Try Again", "다시 시도"));
  retry_->setVisible(item.canBeRetried());
  remove_->setText(isEnded ? L("Remove from List", "목록에서 제거") : L("Cancel", "취소"));
  for (QPushButton* each : {show_, retry_, remove_}) {
    each->setAccessibleName(each->text());
    each->setAccessibleDescription(name);
  }
}

}  // namespace velun
