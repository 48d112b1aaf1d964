// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/user_words_editor.h"

#include "language/localization.h"
#include "settings/app_settings.h"
#include "settings/user_words.h"
#include "ui/settings/settings_form.h"
#include "ui/settings/settings_notes.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kShownLines = 4;

}  // namespace

UserWordsEditor::UserWordsEditor(AppSettings& settings, const SettingsNotes* notes)
    : settings_(settings), notes_(notes), label_(new QLabel), list_(new QPlainTextEdit) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(label_);
  column->addWidget(list_);
  PaddedLabel* note = addNote(column);
  PaddedLabel* unknown = addNote(column);
  // Below the list, not below a check box.
  for (PaddedLabel* each : {note, unknown}) each->setPadding({});
  note_ = note;
  unknown_ = unknown;
  label_->setBuddy(list_);
  list_->setTabChangesFocus(true);
  list_->setLineWrapMode(QPlainTextEdit::NoWrap);
  const int margins =
      2 * (list_->frameWidth() + static_cast<int>(list_->document()->documentMargin()));
  list_->setFixedHeight(kShownLines * list_->fontMetrics().lineSpacing() + margins);
  connect(list_, &QPlainTextEdit::textChanged, this, &UserWordsEditor::store);
  connect(&settings, &AppSettings::userWordsChanged, this, &UserWordsEditor::present);
  connect(&Localization::shared(), &Localization::languageChanged, this, &UserWordsEditor::present);
  if (notes) connect(notes, &SettingsNotes::changed, this, &UserWordsEditor::presentNotes);
  present();
}

void UserWordsEditor::store() {
  const QString words = normalizedUserWords(list_->toPlainText());
  if (words != settings_.userWords()) settings_.setUserWords(words);
}

void UserWordsEditor::present() {
  label_->setText(L("Names and Terms", "이름과 용어"));
  list_->setPlaceholderText(L("One on each line", "한 줄에 하나씩"));
  nameControl(list_, label_->text());
  note_->setText(
      L("Captions prefer these words where they sound alike. The list stays on this computer and "
        "applies from the next start of captions.",
        "비슷하게 들리는 말에서는 이 낱말을 먼저 고릅니다. 목록은 이 컴퓨터에만 저장되며 다음에 "
        "자막을 시작할 때부터 적용됩니다."));
  list_->setAccessibleDescription(note_->text());
  // Not while the user is typing: an empty line may be wanted for the next word.
  if (normalizedUserWords(list_->toPlainText()) != settings_.userWords()) {
    const QSignalBlocker blocker(list_);
    list_->setPlainText(settings_.userWords());
  }
  presentNotes();
}

void UserWordsEditor::presentNotes() {
  const QString text = notes_ ? notes_->unknownWords() : QString();
  unknown_->setText(text);
  unknown_->setVisible(!text.isEmpty());
}

}  // namespace velun
