// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/line_correction.h"

#include "language/localization.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace velun {

namespace {

/// The size of the field in average letters and in lines.
constexpr int kLetters = 60;
constexpr int kLines = 4;

}  // namespace

std::optional<QString> askCorrection(const Line& line) {
  QDialog dialog;
  dialog.setWindowTitle(L("Correct Line", "문장 교정"));
  // Otherwise the caption panel, which is above ordinary windows, would cover it.
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
  auto* label = new QLabel(L("&Text", "본문(&T)"), &dialog);
  auto* field = new QPlainTextEdit(line.text, &dialog);
  field->setAccessibleName(L("Text", "본문"));
  field->setTabChangesFocus(true);
  const QFontMetrics metrics = field->fontMetrics();
  field->setMinimumSize(kLetters * metrics.averageCharWidth(), kLines * metrics.lineSpacing());
  field->selectAll();
  label->setBuddy(field);
  auto* recognized = new QLabel(&dialog);
  recognized->setTextFormat(Qt::PlainText);
  recognized->setWordWrap(true);
  recognized->setText(
      L("Recognized: %1", "인식된 문장: %1").arg(line.original.value_or(line.text)));
  auto* translation =
      new QLabel(L("Its translation stays as it is.", "번역은 그대로 유지됩니다."), &dialog);
  translation->setVisible(!line.translations.empty());
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QPushButton* accept = buttons->button(QDialogButtonBox::Ok);
  QObject::connect(field, &QPlainTextEdit::textChanged, accept, [accept, field] {
    accept->setEnabled(!field->toPlainText().trimmed().isEmpty());
  });
  auto* column = new QVBoxLayout(&dialog);
  for (QWidget* each :
       std::initializer_list<QWidget*>{label, field, recognized, translation, buttons}) {
    column->addWidget(each);
  }
  QPushButton* cancel = buttons->button(QDialogButtonBox::Cancel);
  // The other dialogs have no symbols on their buttons.
  for (QPushButton* button : {accept, cancel}) button->setIcon({});
  // Some desktops place "Cancel" first; a correction must not be lost by Tab and Return.
  QWidget::setTabOrder(field, accept);
  QWidget::setTabOrder(accept, cancel);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* save = new QShortcut(Qt::CTRL | key, &dialog);
    QObject::connect(save, &QShortcut::activated, accept, &QPushButton::click);
  }
  field->setFocus();
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return field->toPlainText();
}

}  // namespace velun
