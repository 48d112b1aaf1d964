// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/models_view.h"

#include "language/localization.h"
#include "ui/common/notice_label.h"
#include "ui/common/symbol.h"
#include "ui/models/model_files.h"
#include "ui/models/model_texts.h"

#include <algorithm>
#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kMargin = 16;
constexpr int kProgressSteps = 1000;

}  // namespace

ModelsView::ModelsView(const std::vector<ModelList*>& lists, ModelFiles& files, QWidget* parent)
    : QWidget(parent), files_(files) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, kMargin, 0, kMargin - 4);
  column->setSpacing(8);
  search_ = new QLineEdit(this);
  search_->setClearButtonEnabled(true);
  search_->addAction(symbolIcon(QStringLiteral("magnifyingglass")), QLineEdit::LeadingPosition);
  auto* top = new QHBoxLayout;
  top->setContentsMargins(kMargin, 0, kMargin, 0);
  top->addWidget(search_);
  column->addLayout(top);
  nothingFound_ = new QLabel(this);
  nothingFound_->setAlignment(Qt::AlignCenter);
  nothingFound_->hide();
  column->addWidget(nothingFound_);
  addSections(lists);
  column->addLayout(makeFooter());

  connect(search_, &QLineEdit::textChanged, this, &ModelsView::search);
  connect(&files_, &ModelFiles::changed, this, &ModelsView::showFiles);
  connect(&Localization::shared(), &Localization::languageChanged, this, &ModelsView::translate);
  translate();
  updateTabOrder();
}

void ModelsView::addSections(const std::vector<ModelList*>& lists) {
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(kMargin, 0, kMargin, 0);
  column->setSpacing(12);
  for (ModelList* list : lists) {
    auto* section = new ModelSection(*list, content);
    sections_.push_back(section);
    column->addWidget(section);
    connect(section, &ModelSection::rowsChanged, this, &ModelsView::updateTabOrder);
  }
  column->addStretch();
  auto* area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  // Scrolls to the focused control.
  area->setFocusPolicy(Qt::NoFocus);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setWidget(content);
  static_cast<QVBoxLayout*>(layout())->addWidget(area, 1);
}

QLayout* ModelsView::makeFooter() {
  outcome_ = new NoticeLabel(this);
  outcome_->setWordWrap(true);
  progress_ = new QProgressBar(this);
  progress_->setRange(0, kProgressSteps);
  progress_->setTextVisible(false);
  diskUse_ = new QLabel(this);
  add_ = new QPushButton(this);
  add_->setAutoDefault(false);
  connect(add_, &QPushButton::clicked, this,
          [this] { files_.progress() ? files_.cancelAdding() : files_.addFromFile(); });
  auto* line = new QHBoxLayout;
  line->addWidget(diskUse_, 1);
  line->addWidget(add_);
  auto* footer = new QVBoxLayout;
  footer->setContentsMargins(kMargin, 0, kMargin, 0);
  footer->addWidget(outcome_);
  footer->addWidget(progress_);
  footer->addLayout(line);
  return footer;
}

void ModelsView::translate() {
  search_->setPlaceholderText(L("Search languages", "언어 검색"));
  search_->setAccessibleName(search_->placeholderText());
  nothingFound_->setText(L("No language found", "검색된 언어 없음"));
  showFiles();
}

void ModelsView::showFiles() {
  const std::optional<double> progress = files_.progress();
  progress_->setVisible(progress.has_value());
  progress_->setValue(static_cast<int>(progress.value_or(0) * kProgressSteps));
  progress_->setAccessibleName(L("Reading the file", "파일을 읽는 중"));
  outcome_->setNotice(files_.outcome());
  diskUse_->setText(L("Models use %1", "모델 사용 공간: %1").arg(sizeText(files_.diskBytes())));
  add_->setText(progress ? L("Cancel", "취소") : L("Add from File…", "파일에서 추가…"));
  add_->setAccessibleName(add_->text());
  add_->setToolTip(progress ? add_->text()
                            : L("Adds a model that you have downloaded in another way",
                                "다른 방법으로 내려받은 모델을 추가합니다"));
}

void ModelsView::search() {
  for (ModelSection* section : sections_) section->setSearch(search_->text());
  nothingFound_->setVisible(
      std::none_of(sections_.begin(), sections_.end(),
                   [](const ModelSection* section) { return section->hasMatches(); }));
}

void ModelsView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Find)) {
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
  } else if (event->key() == Qt::Key_Escape && !search_->text().isEmpty()) {
    search_->clear();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void ModelsView::updateTabOrder() {
  QWidget* last = search_;
  const auto append = [&last](QWidget* next) {
    setTabOrder(last, next);
    last = next;
  };
  for (const ModelSection* section : sections_) {
    for (QWidget* each : section->focusChain()) append(each);
  }
  append(add_);
}

}  // namespace velun
