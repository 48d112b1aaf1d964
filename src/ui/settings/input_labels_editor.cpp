// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/input_labels_editor.h"

#include "language/localization.h"
#include "ui/settings/color_chooser.h"
#include "ui/settings/settings_form.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace velun {

namespace {

constexpr int kMaxNameLength = 40;

}  // namespace

InputLabelsEditor::InputLabelsEditor(AppSettings& settings, QWidget* parent)
    : QWidget(parent), settings_(settings) {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    rows_[i].input = allAudioInputs[i];
    add(rows_[i]);
  }
  connect(&settings_, &AppSettings::inputLabelsChanged, this, &InputLabelsEditor::present);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &InputLabelsEditor::present);
  present();
}

void InputLabelsEditor::add(Row& row) {
  row.label = new QLabel(this);
  row.name = new QLineEdit(this);
  row.name->setMaxLength(kMaxNameLength);
  row.label->setBuddy(row.name);
  row.color = new ColorChooser(ColorChooser::Automatic::no, this);
  auto& grid = static_cast<QGridLayout&>(*layout());
  const int line = grid.rowCount();
  grid.addWidget(row.label, line, 0);
  grid.addWidget(row.name, line, 1);
  grid.addWidget(row.color, line, 2);
  const AudioInput input = row.input;
  connect(row.name, &QLineEdit::editingFinished, this, [this, input, name = row.name] {
    InputLabel label = settings_.inputLabel(input);
    if (label.name == name->text().simplified()) return;
    label.name = name->text();
    settings_.setInputLabel(input, label);
  });
  connect(row.color, &ColorChooser::chosen, this,
          [this, input](const std::optional<QColor>& color) {
            InputLabel label = settings_.inputLabel(input);
            label.color = color.value_or(defaultInputColor(input));
            settings_.setInputLabel(input, label);
          });
}

void InputLabelsEditor::present() {
  for (const Row& row : rows_) {
    const bool isMicrophone = row.input == AudioInput::microphone;
    const InputLabel& label = settings_.inputLabel(row.input);
    const QString name = isMicrophone ? L("Name of the Microphone", "마이크 이름")
                                      : L("Name of the Computer", "컴퓨터 이름");
    row.label->setText(name);
    nameControl(row.name, name);
    row.name->setPlaceholderText(defaultInputName(row.input));
    row.name->setText(label.name);
    row.color->translate();
    row.color->setColor(label.color);
    nameControl(row.color, isMicrophone ? L("Color of the Microphone’s Name", "마이크 이름의 색")
                                        : L("Color of the Computer’s Name", "컴퓨터 이름의 색"));
  }
}

}  // namespace velun
