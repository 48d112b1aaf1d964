// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/shortcuts_editor.h"

#include "language/localization.h"
#include "ui/common/accessible_role.h"
#include "ui/common/shortcut_set.h"
#include "ui/settings/settings_form.h"

#include <QGridLayout>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace velun {

namespace {

const auto kCommand = QStringLiteral("gapplication action app.velun.Velun ");

}  // namespace

ShortcutsEditor::ShortcutsEditor(ShortcutSet& shortcuts, QWidget* parent)
    : QWidget(parent), shortcuts_(shortcuts) {
  auto* form = new QVBoxLayout(this);
  form->setContentsMargins(0, 0, 0, 0);
  form->setSpacing(7);
  heading_ = addHeading(form);
  auto* grid = new QGridLayout;
  grid->setColumnStretch(0, 1);
  grid->setVerticalSpacing(7);
  addLines(*grid);
  form->addLayout(grid);
  PaddedLabel* note = addNote(form);
  // Below the keys, not below a check box.
  note->setPadding({});
  note_ = note;
  note_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  connect(&shortcuts, &ShortcutSet::changed, this, &ShortcutsEditor::present);
  present();
}

void ShortcutsEditor::addLines(QGridLayout& grid) {
  for (const ShortcutSet::Row& row : shortcuts_.rows()) {
    const Line line{row.id, new QLabel(this), new QKeySequenceEdit(this)};
    line.label->setBuddy(line.keys);
    // Qt reports only the field inside it, which does not get the keyboard, as one for text.
    setAccessibleRole(*line.keys, QAccessible::EditableText);
    line.keys->setClearButtonEnabled(true);
    connect(line.keys, &QKeySequenceEdit::editingFinished, this, [this, line] {
      shortcuts_.setKeys(line.id, line.keys->keySequence());
      present();
    });
    // The clear button ends no editing.
    connect(line.keys, &QKeySequenceEdit::keySequenceChanged, this,
            [this, line](const QKeySequence& keys) {
              if (keys.isEmpty()) shortcuts_.setKeys(line.id, keys);
            });
    const int at = grid.rowCount();
    grid.addWidget(line.label, at, 0);
    grid.addWidget(line.keys, at, 1);
    lines_.push_back(line);
  }
}

void ShortcutsEditor::present() {
  heading_->setText(L("Keys in Every Window", "모든 창에서 쓰는 키"));
  const bool isPossible = shortcuts_.way() != GlobalShortcuts::Way::none;
  const std::vector<ShortcutSet::Row> rows = shortcuts_.rows();
  for (std::size_t i = 0; i < lines_.size() && i < rows.size(); ++i) {
    const Line& line = lines_[i];
    line.label->setText(rows[i].title);
    nameControl(line.keys, rows[i].title);
    if (auto* field = line.keys->findChild<QLineEdit*>()) {
      field->setAccessibleName(rows[i].title);
      // Qt has no Korean for its own.
      field->setPlaceholderText(L("Press keys", "키를 누르세요"));
    }
    line.keys->setAccessibleDescription(
        rows[i].isTaken ? L("Another program uses this key.", "다른 프로그램이 이 키를 사용합니다.")
                        : QString());
    const QSignalBlocker blocker(line.keys);
    if (line.keys->keySequence() != rows[i].keys) line.keys->setKeySequence(rows[i].keys);
    line.label->setVisible(isPossible);
    line.keys->setVisible(isPossible);
  }
  note_->setText(noteText());
}

QString ShortcutsEditor::noteText() const {
  QStringList commands;
  QStringList taken;
  for (const ShortcutSet::Row& row : shortcuts_.rows()) {
    commands << kCommand + row.id;
    if (row.isTaken) taken << row.keys.toString(QKeySequence::NativeText);
  }
  switch (shortcuts_.way()) {
    case GlobalShortcuts::Way::program:
      if (!taken.isEmpty()) {
        const QString keys = taken.join(QStringLiteral(", "));
        return L("Another program uses %1. Choose other keys.",
                 "다른 프로그램이 %1 키를 사용합니다. 다른 키를 선택하세요.")
            .arg(keys);
      }
      return L("These keys work while any window is in front.",
               "어느 창이 앞에 있어도 이 키를 사용할 수 있습니다.");
    case GlobalShortcuts::Way::desktop:
      if (shortcuts_.isRefused()) {
        return L("The desktop has not allowed these keys. Change one to be asked again, or add a "
                 "shortcut in the desktop’s keyboard settings with one of these commands:",
                 "데스크톱이 이 키를 허용하지 않았습니다. 키를 바꾸면 다시 묻습니다. 또는 "
                 "데스크톱의 "
                 "키보드 설정에서 다음 명령 중 하나로 단축키를 추가하세요:") +
               u'\n' + commands.join(u'\n');
      }
      return L("The desktop asks you to confirm these keys and can change them in its settings.",
               "데스크톱이 이 키를 확인하도록 요청하며, 데스크톱 설정에서 바꿀 수 있습니다.");
    case GlobalShortcuts::Way::none:
      break;
  }
  return L("On this desktop, programs cannot have keys in every window. In the desktop’s keyboard "
           "settings, add a shortcut with one of these commands:",
           "이 데스크톱에서는 프로그램이 모든 창에서 쓰는 키를 가질 수 없습니다. 데스크톱의 키보드 "
           "설정에서 다음 명령 중 하나로 단축키를 추가하세요:") +
         u'\n' + commands.join(u'\n');
}

}  // namespace velun
