// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/export_view.h"

#include "settings/localization.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace velun {

ExportView::ExportView(CaptionSession session, std::function<void()> cancel, Export onExport,
                       QWidget* parent)
    : QWidget(parent),
      session_(std::move(session)),
      formats_(new QComboBox(this)),
      contents_(new QComboBox(this)),
      languages_(new QComboBox(this)),
      description_(new QLabel(this)) {
  for (const SessionFormat format : allSessionFormats) formats_->addItem(title(format));
  for (const TranscriptContent content : allTranscriptContents) contents_->addItem(title(content));
  languages_->addItem(L("All Translation Languages", "모든 번역 언어"), QString());
  for (const QString& language : session_.translationLanguages()) {
    languages_->addItem(languageName(language), language);
  }

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(20, 18, 20, 18);
  column->setSpacing(6);
  addRow(L("File Format", "파일 형식"), formats_);
  addRow(L("Content", "포함할 내용"), contents_);
  if (languages_->count() > 1) {
    addRow(L("Translation Language", "번역 언어"), languages_);
  } else {
    languages_->hide();
  }
  description_->setWordWrap(true);
  description_->setContentsMargins(0, 8, 0, 0);
  column->addWidget(description_);
  column->addStretch();

  auto* cancelButton = new QPushButton(L("Cancel", "취소"), this);
  cancelButton->setToolTip(L("Close without exporting", "내보내지 않고 닫기"));
  cancelButton->setShortcut(QKeySequence(Qt::Key_Escape));
  auto* exportButton = new QPushButton(L("Export…", "내보내기…"), this);
  exportButton->setToolTip(L("Choose where to write the file", "파일을 저장할 위치 선택"));
  exportButton->setDefault(true);
  exportButton->setAutoDefault(true);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cancelButton);
  buttons->addWidget(exportButton);
  column->addLayout(buttons);

  // Copied before the call: the callbacks may close the window that holds this view.
  connect(cancelButton, &QPushButton::clicked, this, [cancel] {
    const std::function<void()> run = cancel;
    run();
  });
  connect(exportButton, &QPushButton::clicked, this, [this, onExport] {
    const Export run = onExport;
    run(format(), content(), language());
  });
  connect(formats_, &QComboBox::currentIndexChanged, this, &ExportView::present);
  present();
}

void ExportView::addRow(const QString& text, QComboBox* chooser) {
  auto* label = new QLabel(text, this);
  label->setBuddy(chooser);
  chooser->setAccessibleName(text);
  chooser->setToolTip(text);
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->addWidget(label);
  column->addWidget(chooser);
}

void ExportView::present() {
  contents_->setEnabled(format() != SessionFormat::json && session_.hasTranslations());
  languages_->setEnabled(format() != SessionFormat::json);
  description_->setText(explanation(format()));
}

SessionFormat ExportView::format() const {
  return allSessionFormats[static_cast<std::size_t>(formats_->currentIndex())];
}

TranscriptContent ExportView::content() const {
  return allTranscriptContents[static_cast<std::size_t>(contents_->currentIndex())];
}

std::optional<QString> ExportView::language() const {
  const QString chosen = languages_->currentData().toString();
  return chosen.isEmpty() ? std::nullopt : std::optional(chosen);
}

}  // namespace velun
