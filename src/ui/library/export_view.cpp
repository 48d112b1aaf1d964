// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/export_view.h"

#include "language/localization.h"
#include "ui/library/language_label.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStandardItemModel>
#include <QVBoxLayout>

namespace velun {

namespace {

QString onlySelectedText(std::size_t count) {
  if (count == 1) return L("Only the Selected Line", "선택한 줄만");
  return L("Only the %1 Selected Lines", "선택한 %1줄만").arg(count);
}

}  // namespace

ExportView::ExportView(CaptionSession session, std::optional<LineRange> selected,
                       std::function<void()> cancel, Export onExport, QWidget* parent)
    : QWidget(parent),
      session_(std::move(session)),
      selected_(selected),
      formats_(new QComboBox(this)),
      contents_(new QComboBox(this)),
      languages_(new QComboBox(this)),
      times_(new QCheckBox(this)),
      onlySelected_(new QCheckBox(this)),
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
  times_->setChecked(true);
  onlySelected_->setVisible(selected_.has_value());
  column->addSpacing(4);
  column->addWidget(times_);
  column->addWidget(onlySelected_);
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
    run(options());
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
  times_->setText(L("Show Times", "시각 표시"));
  times_->setToolTip(L("Write the time beside every line", "줄마다 시각을 함께 쓰기"));
  if (selected_) onlySelected_->setText(onlySelectedText(selected_->count));
  onlySelected_->setToolTip(
      L("Leave out the lines that are not selected", "선택하지 않은 줄은 빼고 내보내기"));
  cancel_->setText(L("Cancel", "취소"));
  cancel_->setToolTip(L("Close without exporting", "내보내지 않고 닫기"));
  export_->setText(L("Export…", "내보내기…"));
  export_->setToolTip(L("Choose where to write the file", "파일을 저장할 위치 선택"));
  present();
}

void ExportView::present() {
  const bool isWhole = format() == SessionFormat::json;
  contents_->setEnabled(!isWhole && session_.hasTranslations());
  languages_->setEnabled(!isWhole);
  times_->setEnabled(!isWhole && !isSubtitles(format()));
  onlySelected_->setEnabled(!isWhole);
  description_->setText(explanation(format()));
  presentLanguages();
}

/// Subtitles have room for one translation.
void ExportView::presentLanguages() {
  auto* all = static_cast<QStandardItemModel*>(languages_->model())->item(0);
  all->setEnabled(!isSubtitles(format()) || languages_->count() == 1);
  if (!all->isEnabled() && languages_->currentIndex() == 0) languages_->setCurrentIndex(1);
}

ExportOptions ExportView::options() const {
  ExportOptions options{format(), content(), language(), times_->isChecked()};
  if (onlySelected_->isChecked()) options.lines = selected_;
  return options;
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
