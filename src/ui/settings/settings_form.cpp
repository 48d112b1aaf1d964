// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/settings_form.h"

#include <algorithm>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace velun {

namespace {

constexpr qreal kSmallText = 0.86;
constexpr float kSecondaryOpacity = 0.72F;
constexpr int kIndent = 24;
constexpr int kChooserWidth = 245;
/// The width in average letters, which counts with a large font.
constexpr int kChooserLetters = 29;

/// Ignores the mouse wheel, so that scrolling the form changes no setting.
class FormChooser final : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

/// Small, dimmed text.
class Note final : public PaddedLabel {
 public:
  Note() {
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * kSmallText);
    setFont(small);
    setWordWrap(true);
    setIndent(0);
    setPadding({kIndent, 0, 0, 2});
  }

 protected:
  void changeEvent(QEvent* event) override {
    PaddedLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) fade();
  }

 private:
  void fade() {
    if (!parentWidget()) return;
    QColor text = parentWidget()->palette().color(QPalette::WindowText);
    text.setAlphaF(kSecondaryOpacity);
    if (palette().color(QPalette::WindowText) == text) return;
    QPalette colors;
    colors.setColor(QPalette::WindowText, text);
    setPalette(colors);
  }
};

}  // namespace

QLabel* addHeading(QVBoxLayout* form) {
  auto* heading = new QLabel;
  QFont font = heading->font();
  font.setWeight(QFont::DemiBold);
  heading->setFont(font);
  if (form->count() > 0) form->addSpacing(10);
  form->addWidget(heading);
  return heading;
}

QCheckBox* addToggle(QVBoxLayout* form) {
  auto* toggle = new QCheckBox;
  form->addWidget(toggle);
  return toggle;
}

PaddedLabel* addNote(QVBoxLayout* form) {
  auto* note = new Note;
  form->addWidget(note);
  return note;
}

QComboBox* addChooser(QVBoxLayout* form, QLabel** label) {
  auto* chooser = new FormChooser;
  addChooser(form, chooser, label);
  return chooser;
}

void addChooser(QVBoxLayout* form, QComboBox* chooser, QLabel** label) {
  chooser->setFocusPolicy(Qt::StrongFocus);
  auto* row = new QHBoxLayout;
  if (label) {
    *label = new QLabel;
    (*label)->setBuddy(chooser);
    row->addWidget(*label);
    row->addStretch();
    const int letters = kChooserLetters * chooser->fontMetrics().averageCharWidth();
    chooser->setMinimumWidth(std::max(kChooserWidth, letters));
    chooser->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    row->addWidget(chooser);
  } else {
    row->addWidget(chooser, 1);
  }
  form->addLayout(row);
}

void fillChooser(QComboBox* chooser, std::vector<Choice> choices, const Choice& current) {
  const auto isCurrent = [&current](const Choice& choice) {
    return choice.value == current.value;
  };
  if (std::none_of(choices.begin(), choices.end(), isCurrent)) choices.push_back(current);
  const QSignalBlocker blocker(chooser);
  chooser->clear();
  for (const Choice& choice : choices) chooser->addItem(choice.label, choice.value);
  const auto position = std::find_if(choices.begin(), choices.end(), isCurrent);
  chooser->setCurrentIndex(static_cast<int>(position - choices.begin()));
}

void nameControl(QWidget* control, const QString& name) {
  control->setAccessibleName(name);
  control->setToolTip(name);
}

void labelChooser(QLabel* label, QComboBox* chooser, const QString& text) {
  label->setText(text);
  nameControl(chooser, text);
}

void labelToggle(QCheckBox* toggle, const QString& text) {
  toggle->setText(text);
  nameControl(toggle, text);
}

void explainToggle(QCheckBox* toggle, QLabel* note, const QString& text) {
  note->setText(text);
  toggle->setAccessibleDescription(text);
}

void checkToggle(QCheckBox* toggle, bool checked) {
  const QSignalBlocker blocker(toggle);
  toggle->setChecked(checked);
}

void setNote(QLabel* note, const QString& text) {
  note->setText(text);
  note->setVisible(!text.isEmpty());
}

}  // namespace velun
