// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/export_view.h"

#include "language/localization.h"
#include "ui/library/language_label.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
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
      description_(new QLabel(this)),
      cancel_(new QPushButton(this)),
      export_(new QPushButton(this)) {
  fillChoosers();
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(20, 18, 20, 18);
  column->setSpacing(6);
  formatLabel_ = addRow(formats_);
  contentLabel_ = addRow(contents_);
  languageLabel_ = addRow(languages_);
  if (languages_->count() == 1) {
    languageLabel_->hide();
    languages_->hide();
  }
  description_->setWordWrap(true);
  description_->setContentsMargins(0, 8, 0, 0);
  column->addWidget(description_);
  column->addStretch();
  export_->setDefault(true);
  export_->setAutoDefault(true);
  cancel_->setAutoDefault(true);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cancel_);
  buttons->addWidget(export_);
  column->addLayout(buttons);

  // Copied before the call: the callbacks may close the window that holds this view.
  connect(cancel_, &QPushButton::clicked, this, [cancel] {
    const std::function<void()> run = cancel;
    run();
  });
  connect(export_, &QPushButton::clicked, this, [this, onExport] {
    const Export run = onExport;
    run(format(), content(), language());
  });
  connect(formats_, &QComboBox::currentIndexChanged, this, &ExportView::present);
  connect(&Localization::shared(), &Localization::languageChanged, this, &ExportView::translate);
  translate();
}

void ExportView::fillChoosers() {
  for (const SessionFormat format : allSessionFormats) formats_->addItem(title(format));
  for (const TranscriptContent content : allTranscriptContents) contents_->addItem(title(content));
  languages_->addItem(QString(), QString());
  for (const QString& language : session_.translationLanguages()) {
    languages_->addItem(languageLabel(language), language);
  }
}

QLabel* ExportView::addRow(QComboBox* chooser) {
  auto* label = new QLabel(this);
  label->setBuddy(chooser);
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->addWidget(label);
  column->addWidget(chooser);
  return label;
}

void ExportView::keyPressEvent(QKeyEvent* event) {
  // Return and Escape as in a QDialog. Shortcuts would also take them from open combo boxes.
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      export_->click();
      break;
    case Qt::Key_Escape:
      cancel_->click();
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

void ExportView::translate() {
  const auto name = [](QLabel* label, QComboBox* chooser, const QString& text) {
    label->setText(text);
    chooser->setAccessibleName(text);
    chooser->setToolTip(text);
  };
  name(formatLabel_, formats_, L("File Format", "파일 형식"));
  name(contentLabel_, contents_, L("Content", "포함할 내용"));
  name(languageLabel_, languages_, L("Translation Language", "번역 언어"));
  for (int i = 0; i < formats_->count(); ++i) {
    formats_->setItemText(i, title(allSessionFormats[static_cast<std::size_t>(i)]));
  }
  for (int i = 0; i < contents_->count(); ++i) {
    contents_->setItemText(i, title(allTranscriptContents[static_cast<std::size_t>(i)]));
  }
  languages_->setItemText(0, L("All Translation Languages", "모든 번역 언어"));
  for (int i = 1; i < languages_->count(); ++i) {
    languages_->setItemText(i, languageLabel(languages_->itemData(i).toString()));
  }
  cancel_->setText(L("Cancel", "취소"));
  cancel_->setToolTip(L("Close without exporting", "내보내지 않고 닫기"));
  export_->setText(L("Export…", "내보내기…"));
  export_->setToolTip(L("Choose where to write the file", "파일을 저장할 위치 선택"));
  present();
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
